package com.nelo.zel.vosmar.cli;

/** The password that the key database gets, or the PIN that the token gets. */
final class NewPassword extends PasswordOptions {
  NewPassword(Secrets secrets) {
    super(secrets, "--new-password", "new database password", "the new password, or PIN,");
  }

  char[] pin() {
    return read("new token PIN", true);
  }
}
