package com.nelo.zel.vosmar.cli.db;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.KeyRingFile;
import com.nelo.zel.vosmar.cli.options.StorePassword;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Output;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.Locale;
import java.util.Map;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar db convert}. */
@Command(
    name = "convert",
    description =
        "Makes a key ring file (a PKCS#12 file with all that a key database holds) of a key"
            + " database, or a key database of a key ring file.")
final class DbConvert implements Callable<Integer> {
  /** What is made. */
  enum Format {
    KYR,
    KDB
  }

  @Parameters(paramLabel = "FILE", description = "The file to convert.")
  private Path source;

  @Option(
      names = {"-o", "--out"},
      required = true,
      paramLabel = "FILE",
      description = "The file to create.")
  private Path target;

  @Option(
      names = "--to",
      paramLabel = "FORMAT",
      description =
          "kyr, a key ring file, or kdb, a key database; told from the new file's extension when"
              + " not given.")
  private Format format;

  @Mixin private StorePassword databasePassword;

  @Mixin private KeyRingPassword keyRingPassword;

  @Mixin private Output output;

  @Override
  public Integer call() throws CMSKeyDatabaseException {
    switch (format == null ? formatOf(target) : format) {
      case KYR -> toKeyRing();
      case KDB -> toKeyDatabase();
    }
    output.print("wrote " + target, Map.of("written", target));
    return ExitCode.OK;
  }

  private void toKeyRing() throws CMSKeyDatabaseException {
    try (CMSKeyDatabase database = databasePassword.open(source)) {
      char[] secret = keyRingPassword.fresh();
      try {
        KeyRingFile.write(database, target, secret);
      } finally {
        Arrays.fill(secret, '\0');
      }
    }
  }

  private void toKeyDatabase() throws CMSKeyDatabaseException {
    char[] secret = keyRingPassword.existing();
    char[] databaseSecret = databasePassword.fresh();
    try {
      KeyRingFile.toKeyDatabase(source, secret, target, databaseSecret).close();
    } finally {
      Arrays.fill(secret, '\0');
      Arrays.fill(databaseSecret, '\0');
    }
  }

  private static Format formatOf(Path file) {
    String name = file.toString().toLowerCase(Locale.ROOT);
    if (name.endsWith(".kyr")) {
      return Format.KYR;
    }
    if (name.endsWith(".kdb")) {
      return Format.KDB;
    }
    throw new IllegalArgumentException("say with --to what " + file + " shall be: kyr or kdb");
  }
}
