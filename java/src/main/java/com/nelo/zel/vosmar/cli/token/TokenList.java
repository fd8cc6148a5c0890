package com.nelo.zel.vosmar.cli.token;

import static java.util.Map.entry;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.CryptographicToken;
import com.nelo.zel.vosmar.cli.options.TokenUri;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Json;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.List;
import java.util.Map;
import java.util.concurrent.Callable;
import java.util.stream.Collectors;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** {@code vosmar token list}. */
@Command(name = "list", description = "Lists the tokens of a module, as other commands take them.")
final class TokenList implements Callable<Integer> {
  @Parameters(
      paramLabel = "MODULE",
      description = "The file of the PKCS #11 module, or its name in the configuration of p11-kit.")
  private String module;

  @Mixin private Output output;

  @Override
  public Integer call() throws CMSKeyDatabaseException {
    List<TokenUri> tokens =
        CryptographicToken.list(module).stream().map(label -> new TokenUri(label, module)).toList();
    String text =
        tokens.stream().map(TokenUri::toString).collect(Collectors.joining(System.lineSeparator()));
    output.print(
        text.isEmpty() ? "(none)" : text,
        Map.of(
            "tokens",
            tokens.stream()
                .map(token -> Json.object(entry("label", token.label()), entry("uri", token)))
                .toList()));
    return ExitCode.OK;
  }
}
