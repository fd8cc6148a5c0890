package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.cli.cert.CertCommand;
import com.nelo.zel.vosmar.cli.db.DbCommand;
import com.nelo.zel.vosmar.cli.key.KeyCommand;
import com.nelo.zel.vosmar.cli.pfx.PfxCommand;
import com.nelo.zel.vosmar.cli.store.StoreCommand;
import com.nelo.zel.vosmar.cli.token.TokenCommand;
import java.lang.module.ModuleDescriptor;
import java.util.Optional;
import picocli.AutoComplete.GenerateCompletion;
import picocli.CommandLine.Command;
import picocli.CommandLine.HelpCommand;
import picocli.CommandLine.IVersionProvider;
import picocli.CommandLine.ScopeType;

/** {@code vosmar}: everything else is below it. */
@Command(
    name = "vosmar",
    description =
        "Works with keys and certificates: in key databases, files under one password, on tokens"
            + " and in certificate stores.",
    mixinStandardHelpOptions = true,
    scope = ScopeType.INHERIT,
    versionProvider = VosmarCommand.Version.class,
    synopsisSubcommandLabel = "COMMAND",
    exitCodeListHeading = "%nExit codes:%n",
    exitCodeList = {
      "0:done",
      "1:failed for a reason that the message tells",
      "2:the command line is wrong, or a password is not to be had",
      "3:a password is wrong, past its lifetime, or refused",
      "4:a file or label does not exist",
      "5:a file or label exists already",
      "6:a file is damaged, or of another kind"
    },
    subcommands = {
      DbCommand.class,
      KeyCommand.class,
      CertCommand.class,
      PfxCommand.class,
      TokenCommand.class,
      StoreCommand.class,
      GenerateCompletion.class,
      HelpCommand.class
    })
final class VosmarCommand {
  /** The version that the jar was built as. */
  static final class Version implements IVersionProvider {
    @Override
    public String[] getVersion() {
      Optional<String> version =
          Optional.ofNullable(VosmarCommand.class.getModule().getDescriptor())
              .flatMap(ModuleDescriptor::rawVersion);
      return new String[] {"vosmar " + version.orElse("(unpacked)")};
    }
  }
}
