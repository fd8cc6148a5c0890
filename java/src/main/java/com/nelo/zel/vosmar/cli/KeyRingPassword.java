package com.nelo.zel.vosmar.cli;

/** The password of a key ring file. */
final class KeyRingPassword extends PasswordOptions {
  KeyRingPassword(Secrets secrets) {
    super(secrets, "--kyr-password", "key ring password", "the key ring password");
  }
}
