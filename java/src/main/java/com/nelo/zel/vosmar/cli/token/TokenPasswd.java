package com.nelo.zel.vosmar.cli.token;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.CryptographicToken;
import com.nelo.zel.vosmar.cli.options.NewPassword;
import com.nelo.zel.vosmar.cli.options.StorePassword;
import com.nelo.zel.vosmar.cli.options.TokenUri;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.Arrays;
import java.util.Map;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** {@code vosmar token passwd}. */
@Command(name = "passwd", description = "Changes the PIN of a token.")
final class TokenPasswd implements Callable<Integer> {
  @Parameters(
      paramLabel = "TOKEN",
      description = "The token, as 'vosmar token list' tells it.")
  private String uri;

  @Mixin private StorePassword password;

  @Mixin private NewPassword newPassword;

  @Mixin private Output output;

  @Override
  public Integer call() throws CMSKeyDatabaseException {
    TokenUri token = TokenUri.parse(uri);
    char[] pin = password.pin();
    char[] newPin = newPassword.pin();
    try {
      CryptographicToken.changePassword(token.module(), token.label(), pin, newPin);
    } finally {
      Arrays.fill(pin, '\0');
      Arrays.fill(newPin, '\0');
    }
    output.print("changed the PIN of " + token.label(), Map.of("changed", token.label()));
    return ExitCode.OK;
  }
}
