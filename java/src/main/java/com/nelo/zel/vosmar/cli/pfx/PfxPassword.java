package com.nelo.zel.vosmar.cli.pfx;

import com.nelo.zel.vosmar.cli.options.PasswordOptions;
import com.nelo.zel.vosmar.cli.options.Secrets;

/** The password of a PFX file. */
final class PfxPassword extends PasswordOptions {
  PfxPassword(Secrets secrets) {
    super(secrets, "--pfx-password", "PFX password", "the PFX password");
  }
}
