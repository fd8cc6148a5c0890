package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.ResultCode;

/** What to try after a failure. */
final class Advice {
  private Advice() {}

  /** A sentence or two for a result code; empty where there is nothing to say. */
  static String of(ResultCode resultCode) {
    return switch (resultCode) {
      case DATABASE_ALREADY_EXISTS ->
          "Choose another name; vosmar never overwrites a key database or key ring.";
      case DATABASE_INVALID_PASSWORD ->
          "Mind upper and lower case; with --password-file only the first line counts.";
      case DATABASE_INVALID_FILE_TYPE -> "Give the name of a file made by 'vosmar db create'.";
      case DATABASE_CORRUPTION, DATABASE_PASSWORD_CORRUPTION, DATABASE_KEY_INTEGRITY ->
          "The file was left as it is. Restore it from a backup.";
      case DATABASE_READ ->
          "Check with 'vosmar key list' and restore the key database from a backup.";
      case DATABASE_INVALID_VERSION -> "Use the version of vosmar that wrote the key database.";
      case DATABASE_DUPLICATE_KEY,
          DATABASE_DUPLICATE_KEY_LABEL,
          DATABASE_DUPLICATE_KEY_ISSUER_AND_SERIAL_NUMBER,
          DATABASE_DUPLICATE_KEY_SUBJECT_PUBLIC_KEY_INFO,
          DATABASE_DUPLICATE_LABEL ->
          "'vosmar key list' shows which labels are taken.";
      case CRYPTO_UNSUPPORTED_MODULUS_SIZE ->
          "Use rsa:2048 to rsa:16384, ec:256, ec:384, ec:521 or ed25519.";
      case NEW_PASSWORD, PWD_TOO_SHORT, PWD_NO_NUMBER, PWD_NO_CONTROL_KEY ->
          "Use 6 characters or more, 14 or more for a FIPS key database.";
      case PASSWORD_EXPIRATION_TIME -> "Set a new password with 'vosmar db passwd'.";
      case FILE_OPEN, FILE_OPEN_TO_READ, FILE_OPEN_TO_WRITE, FILE_OPEN_NOT_ALLOWED, FILE_WRITE ->
          "Check that the file's folder exists and who may read and write it.";
      case KEYDB_NOT_EXIST -> "Check the name, or make the key database with 'vosmar db create'.";
      case PWDFILE_NOT_EXIST ->
          "Write the stash file with 'vosmar db stash', or give the password.";
      case KEY_GET_BY_LABEL -> "'vosmar key list' shows the labels.";
      case PKCS12_PWD_CORRUPTION ->
          "Mind upper and lower case; of a password file only the first line counts.";
      case CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST ->
          "'vosmar token list' shows the tokens of a module, 'vosmar store list' the certificate"
              + " stores.";
      case CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED ->
          "Give the PIN with --password-env or --password-file.";
      case CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED -> "Leave the password option out.";
      case CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED ->
          "Give the file of a PKCS #11 module, or the name that the configuration of p11-kit has.";
      case CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED ->
          "After too many wrong PINs a token is locked; the program of its maker tells.";
      case NO_TOKEN_PRESENT ->
          "Plug the token in; a new one is first made ready with the program of its maker.";
      default -> "";
    };
  }
}
