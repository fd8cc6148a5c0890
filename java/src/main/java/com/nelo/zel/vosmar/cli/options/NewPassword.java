package com.nelo.zel.vosmar.cli.options;

/** The password that the key database gets, or the PIN that the token gets. */
public final class NewPassword extends PasswordOptions {
  NewPassword(Secrets secrets) {
    super(secrets, "--new-password", "new database password", "the new password, or PIN,");
  }

  /**
   * A PIN that is made up now.
   *
   * @return the PIN, which the caller wipes
   */
  public char[] pin() {
    return read("new token PIN", true);
  }
}
