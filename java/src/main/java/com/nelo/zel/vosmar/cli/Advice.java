package com.nelo.zel.vosmar.cli;

/** What to try after a failure. */
final class Advice {
  private Advice() {}

  /** A sentence or two for a result code; empty where there is nothing to say. */
  static String of(int resultCode) {
    return switch (resultCode) {
      case 9 -> "Choose another name; vosmar never overwrites a key database or key ring.";
      case 16 -> "Mind upper and lower case; with --password-file only the first line counts.";
      case 17 -> "Give the name of a file made by 'vosmar db create'.";
      case 18, 19, 20 -> "The file was left as it is. Restore it from a backup.";
      case 12 -> "Check with 'vosmar key list' and restore the key database from a backup.";
      case 15 -> "Use the version of vosmar that wrote the key database.";
      case 21, 23, 26, 27, 29 -> "'vosmar key list' shows which labels are taken.";
      case 41 -> "Use rsa:2048 to rsa:16384, ec:256, ec:384, ec:521 or ed25519.";
      case 69, 130, 131, 132 ->
          "Use 6 characters or more, 14 or more for a FIPS key database.";
      case 70 -> "Set a new password with 'vosmar db passwd'.";
      case 80 -> "See which options the command offers with --help.";
      case 86, 87, 88, 90, 91 -> "Check that the file's folder exists and who may read and write it.";
      case 101 -> "Check the name, or make the key database with 'vosmar db create'.";
      case 103 -> "Write the stash file with 'vosmar db stash', or give the password.";
      case 117 -> "'vosmar key list' shows the labels.";
      case 120 -> "Mind upper and lower case; of a password file only the first line counts.";
      case 137 ->
          "'vosmar token list' shows the tokens of a module, 'vosmar store list' the certificate stores.";
      case 138 -> "Give the PIN with --password-env or --password-file.";
      case 139 -> "Leave the password option out.";
      case 140 ->
          "Give the file of a PKCS #11 module, or the name that the configuration of p11-kit has.";
      case 142 -> "After too many wrong PINs a token is locked; the program of its maker tells.";
      case 151 -> "Plug the token in; a new one is first made ready with the program of its maker.";
      default -> "";
    };
  }
}
