package com.nelo.zel.vosmar.cli.db;

import com.nelo.zel.vosmar.cli.options.PasswordOptions;
import com.nelo.zel.vosmar.cli.options.Secrets;

/** The password of a key ring file. */
final class KeyRingPassword extends PasswordOptions {
  KeyRingPassword(Secrets secrets) {
    super(secrets, "--kyr-password", "key ring password", "the key ring password");
  }
}
