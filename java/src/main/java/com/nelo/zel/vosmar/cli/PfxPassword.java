package com.nelo.zel.vosmar.cli;

/** The password of a PFX file. */
final class PfxPassword extends PasswordOptions {
  PfxPassword(Secrets secrets) {
    super(secrets, "--pfx-password", "PFX password", "the PFX password");
  }
}
