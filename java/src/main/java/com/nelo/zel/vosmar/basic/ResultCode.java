package com.nelo.zel.vosmar.basic;

import java.util.Arrays;
import java.util.Map;
import java.util.Optional;
import java.util.function.Function;
import java.util.stream.Collectors;

/**
 * The result codes of the key management library: why an operation failed.
 *
 * <p>A constant has the name that the library gives the code, without {@code ZELKM_ERR_}. Many
 * programs need no more than its kind:
 *
 * <pre>
 * try (CMSKeyDatabase db = CMSKeyDatabase.open(file, password)) {
 *   ...
 * } catch (CMSKeyDatabaseException failure) {
 *   if (failure.kind() == ResultKind.PASSWORD) {
 *     askAgain();
 *   }
 * }
 * </pre>
 */
public enum ResultCode {
  // The constants below are written by script/result-codes.

  /** Code 1: something failed in a way that was not foreseen. */
  UNKNOWN(1, ResultKind.SYSTEM, "something failed in a way that was not foreseen"),

  /** Code 2: the data is no valid ASN.1. */
  ASN(2, ResultKind.MALFORMED, "the data is no valid ASN.1"),

  /** Code 3, which tells no more than its name. */
  ASN_INITIALIZATION(3),

  /** Code 4, which tells no more than its name. */
  ASN_PARAMETER(4),

  /** Code 5: the key database failed in an uncommon way. */
  DATABASE(5, ResultKind.SYSTEM, "the key database failed in an uncommon way"),

  /** Code 6: the key database cannot be opened. */
  DATABASE_OPEN(6, ResultKind.FILE, "the key database cannot be opened"),

  /** Code 7, which tells no more than its name. */
  DATABASE_RE_OPEN(7),

  /** Code 8: the key database cannot be created. */
  DATABASE_CREATE(8, ResultKind.FILE, "the key database cannot be created"),

  /** Code 9: the file exists already. */
  DATABASE_ALREADY_EXISTS(9, ResultKind.EXISTS, "the file exists already"),

  /** Code 10, which tells no more than its name. */
  DATABASE_DELETE(10),

  /** Code 11, which tells no more than its name. */
  DATABASE_NOT_OPENED(11),

  /** Code 12: the entry cannot be read. */
  DATABASE_READ(12, ResultKind.UNREADABLE, "the entry cannot be read"),

  /** Code 13: the key database cannot be written. */
  DATABASE_WRITE(13, ResultKind.FILE, "the key database cannot be written"),

  /** Code 14, which tells no more than its name. */
  DATABASE_VALIDATION(14),

  /** Code 15: the key database was written by a newer version. */
  DATABASE_INVALID_VERSION(
      15, ResultKind.UNREADABLE, "the key database was written by a newer version"),

  /** Code 16: the password is wrong. */
  DATABASE_INVALID_PASSWORD(16, ResultKind.PASSWORD, "the password is wrong"),

  /** Code 17: the file is no key database. */
  DATABASE_INVALID_FILE_TYPE(17, ResultKind.UNREADABLE, "the file is no key database"),

  /** Code 18: the key database is damaged. */
  DATABASE_CORRUPTION(18, ResultKind.UNREADABLE, "the key database is damaged"),

  /** Code 19: the record of the password, or the stash file, is damaged. */
  DATABASE_PASSWORD_CORRUPTION(
      19, ResultKind.UNREADABLE, "the record of the password, or the stash file, is damaged"),

  /** Code 20: an entry of the key database is damaged or was tampered with. */
  DATABASE_KEY_INTEGRITY(
      20, ResultKind.UNREADABLE, "an entry of the key database is damaged or was tampered with"),

  /** Code 21: the key is in the key database already. */
  DATABASE_DUPLICATE_KEY(21, ResultKind.EXISTS, "the key is in the key database already"),

  /** Code 22, which tells no more than its name. */
  DATABASE_DUPLICATE_KEY_RECORD_ID(22),

  /** Code 23: the label is taken. */
  DATABASE_DUPLICATE_KEY_LABEL(23, ResultKind.EXISTS, "the label is taken"),

  /** Code 24, which tells no more than its name. */
  DATABASE_DUPLICATE_KEY_SIGNATURE(24),

  /** Code 25, which tells no more than its name. */
  DATABASE_DUPLICATE_KEY_UNSIGNED_CERTIFICATE(25),

  /** Code 26: a certificate of this issuer and serial number is in the key database. */
  DATABASE_DUPLICATE_KEY_ISSUER_AND_SERIAL_NUMBER(
      26,
      ResultKind.EXISTS,
      "a certificate of this issuer and serial number is in the key database"),

  /** Code 27: a certificate of this public key is in the key database. */
  DATABASE_DUPLICATE_KEY_SUBJECT_PUBLIC_KEY_INFO(
      27, ResultKind.EXISTS, "a certificate of this public key is in the key database"),

  /** Code 28, which tells no more than its name. */
  DATABASE_DUPLICATE_KEY_UNSIGNED_CRL(28),

  /** Code 29: the label is taken. */
  DATABASE_DUPLICATE_LABEL(29, ResultKind.EXISTS, "the label is taken"),

  /** Code 30, which tells no more than its name. */
  DATABASE_PASSWORD_ENCRYPTION(30),

  /** Code 31, which tells no more than its name. */
  DATABASE_LDAP(31),

  /** Code 32: a cryptographic operation failed. */
  CRYPTO(32, ResultKind.SYSTEM, "a cryptographic operation failed"),

  /** Code 33, which tells no more than its name. */
  CRYPTO_ENGINE(33),

  /** Code 34, which tells no more than its name. */
  CRYPTO_ALGORITHM(34),

  /** Code 35: signing failed. */
  CRYPTO_SIGN(35, ResultKind.SYSTEM, "signing failed"),

  /** Code 36: the signature does not verify. */
  CRYPTO_VERIFY(36, ResultKind.VALIDATION, "the signature does not verify"),

  /** Code 37: a digest cannot be computed. */
  CRYPTO_DIGEST(37, ResultKind.SYSTEM, "a digest cannot be computed"),

  /** Code 38, which tells no more than its name. */
  CRYPTO_PARAMETER(38),

  /** Code 39: the algorithm is not supported. */
  CRYPTO_UNSUPPORTED_ALGORITHM(39, ResultKind.UNSUPPORTED, "the algorithm is not supported"),

  /** Code 40, which tells no more than its name. */
  CRYPTO_INPUT_GREATER_THAN_MODULUS(40),

  /** Code 41: there are no keys of this size. */
  CRYPTO_UNSUPPORTED_MODULUS_SIZE(41, ResultKind.UNSUPPORTED, "there are no keys of this size"),

  /** Code 42: the certificate is not valid. */
  VALIDATION(42, ResultKind.VALIDATION, "the certificate is not valid"),

  /** Code 43, which tells no more than its name. */
  VALIDATION_KEY(43),

  /** Code 44: an extension is there twice. */
  VALIDATION_DUPLICATE_EXTENSIONS(44, ResultKind.VALIDATION, "an extension is there twice"),

  /** Code 45: the X.509 version is wrong. */
  VALIDATION_KEY_WRONG_VERSION(45, ResultKind.VALIDATION, "the X.509 version is wrong"),

  /** Code 46: extensions need X.509 version 3. */
  VALIDATION_KEY_EXTENSIONS_REQUIRED(46, ResultKind.VALIDATION, "extensions need X.509 version 3"),

  /** Code 47: the certificate is outside its period of validity. */
  VALIDATION_KEY_VALIDITY(
      47, ResultKind.VALIDATION, "the certificate is outside its period of validity"),

  /** Code 48: the period of validity is wrong. */
  VALIDATION_KEY_VALIDITY_PERIOD(48, ResultKind.VALIDATION, "the period of validity is wrong"),

  /** Code 49, which tells no more than its name. */
  VALIDATION_KEY_VALIDITY_PRIVATE_KEY_USAGE(49),

  /** Code 50: the issuer's certificate is not in the key database. */
  VALIDATION_KEY_ISSUER_NOT_FOUND(
      50, ResultKind.VALIDATION, "the issuer's certificate is not in the key database"),

  /** Code 51, which tells no more than its name. */
  VALIDATION_KEY_MISSING_REQUIRED_EXTENSIONS(51),

  /** Code 52: the issuer is no certificate authority, or its path length is exceeded. */
  VALIDATION_KEY_BASIC_CONSTRAINTS(
      52,
      ResultKind.VALIDATION,
      "the issuer is no certificate authority, or its path length is exceeded"),

  /** Code 53: the certificate's signature is wrong. */
  VALIDATION_KEY_SIGNATURE(53, ResultKind.VALIDATION, "the certificate's signature is wrong"),

  /** Code 54: the chain ends at a root that is not trusted. */
  VALIDATION_KEY_ROOT_KEY_NOT_TRUSTED(
      54, ResultKind.VALIDATION, "the chain ends at a root that is not trusted"),

  /** Code 55, which tells no more than its name. */
  VALIDATION_KEY_IS_REVOKED(55),

  /** Code 56: a key identifier is missing, or does not fit. */
  VALIDATION_KEY_AUTHORITY_KEY_IDENTIFIER(
      56, ResultKind.VALIDATION, "a key identifier is missing, or does not fit"),

  /** Code 57, which tells no more than its name. */
  VALIDATION_KEY_PRIVATE_KEY_USAGE_PERIOD(57),

  /** Code 58: there is no subject, and no critical alternative name. */
  VALIDATION_SUBJECT_ALTERNATIVE_NAME(
      58, ResultKind.VALIDATION, "there is no subject, and no critical alternative name"),

  /** Code 59, which tells no more than its name. */
  VALIDATION_ISSUER_ALTERNATIVE_NAME(59),

  /** Code 60: the key usage is missing, or does not allow this. */
  VALIDATION_KEY_USAGE(
      60, ResultKind.VALIDATION, "the key usage is missing, or does not allow this"),

  /** Code 61: there is a critical extension that is not known. */
  VALIDATION_KEY_UNKNOWN_CRITICAL_EXTENSION(
      61, ResultKind.VALIDATION, "there is a critical extension that is not known"),

  /** Code 62: key and certificate do not belong together. */
  VALIDATION_KEY_PAIR(62, ResultKind.VALIDATION, "key and certificate do not belong together"),

  /** Code 63, which tells no more than its name. */
  VALIDATION_CRL(63),

  /** Code 64, which tells no more than its name. */
  MUTEX(64),

  /** Code 65: an argument is missing or wrong. */
  PARAMETER(65, ResultKind.ARGUMENT, "an argument is missing or wrong"),

  /** Code 66: an argument is missing. */
  NULL_PARAMETER(66, ResultKind.ARGUMENT, "an argument is missing"),

  /** Code 67: the serial number is too long. */
  NUMBER_SIZE(67, ResultKind.ARGUMENT, "the serial number is too long"),

  /** Code 68: the old password was refused. */
  OLD_PASSWORD(68, ResultKind.PASSWORD, "the old password was refused"),

  /** Code 69: the new password was refused. */
  NEW_PASSWORD(69, ResultKind.PASSWORD, "the new password was refused"),

  /** Code 70: the password has passed its lifetime. */
  PASSWORD_EXPIRATION_TIME(70, ResultKind.PASSWORD, "the password has passed its lifetime"),

  /** Code 71, which tells no more than its name. */
  THREAD(71),

  /** Code 72, which tells no more than its name. */
  THREAD_CREATE(72),

  /** Code 73, which tells no more than its name. */
  THREAD_WAIT_FOR_EXIT(73),

  /** Code 74: the file cannot be read or written. */
  IO(74, ResultKind.FILE, "the file cannot be read or written"),

  /** Code 75, which tells no more than its name. */
  LOAD(75),

  /** Code 76, which tells no more than its name. */
  PKCS11(76),

  /** Code 77: the token has no PIN yet. */
  NOT_INITIALIZED(77, ResultKind.REFUSED, "the token has no PIN yet"),

  /** Code 78, which tells no more than its name. */
  DB_TABLE_CORRUPTED(78),

  /** Code 79: there is not enough memory. */
  MEMORY_ALLOCATE(79, ResultKind.SYSTEM, "there is not enough memory"),

  /** Code 80: this is not supported. */
  UNSUPPORTED_OPTION(80, ResultKind.UNSUPPORTED, "this is not supported"),

  /** Code 81: the period of validity cannot be written. */
  GET_TIME(81, ResultKind.SYSTEM, "the period of validity cannot be written"),

  /** Code 82, which tells no more than its name. */
  CREATE_MUTEX(82),

  /** Code 83, which tells no more than its name. */
  CMDCAT_OPEN(83),

  /** Code 84, which tells no more than its name. */
  ERRCAT_OPEN(84),

  /** Code 85: the file name is missing. */
  FILENAME_NULL(85, ResultKind.ARGUMENT, "the file name is missing"),

  /** Code 86: the file cannot be opened. */
  FILE_OPEN(86, ResultKind.FILE, "the file cannot be opened"),

  /** Code 87: the file cannot be opened to be read. */
  FILE_OPEN_TO_READ(87, ResultKind.NOT_FOUND, "the file cannot be opened to be read"),

  /** Code 88: the file cannot be opened to be written. */
  FILE_OPEN_TO_WRITE(88, ResultKind.FILE, "the file cannot be opened to be written"),

  /** Code 89: the file does not exist. */
  FILE_OPEN_NOT_EXIST(89, ResultKind.NOT_FOUND, "the file does not exist"),

  /** Code 90: access to the file is not allowed. */
  FILE_OPEN_NOT_ALLOWED(90, ResultKind.FILE, "access to the file is not allowed"),

  /** Code 91: the file cannot be written. */
  FILE_WRITE(91, ResultKind.FILE, "the file cannot be written"),

  /** Code 92: the file cannot be removed. */
  FILE_REMOVE(92, ResultKind.FILE, "the file cannot be removed"),

  /** Code 93: the file is no valid Base64. */
  BASE64_INVALID_DATA(93, ResultKind.MALFORMED, "the file is no valid Base64"),

  /** Code 94: the file's armour does not end as it began. */
  BASE64_INVALID_MSGTYPE(94, ResultKind.MALFORMED, "the file's armour does not end as it began"),

  /** Code 95: the data cannot be written in Base64. */
  BASE64_ENCODING(95, ResultKind.SYSTEM, "the data cannot be written in Base64"),

  /** Code 96: the file is no valid Base64. */
  BASE64_DECODING(96, ResultKind.MALFORMED, "the file is no valid Base64"),

  /** Code 97, which tells no more than its name. */
  DN_TAG_NULL(97),

  /** Code 98, which tells no more than its name. */
  DN_CN_NULL(98),

  /** Code 99, which tells no more than its name. */
  DN_C_NULL(99),

  /** Code 100: the key database, token or certificate store is not open. */
  INVALID_DB_HANDLE(
      100, ResultKind.ARGUMENT, "the key database, token or certificate store is not open"),

  /** Code 101: the key database does not exist. */
  KEYDB_NOT_EXIST(101, ResultKind.NOT_FOUND, "the key database does not exist"),

  /** Code 102, which tells no more than its name. */
  KEYPAIRDB_NOT_EXIST(102),

  /** Code 103: there is no stash file. */
  PWDFILE_NOT_EXIST(103, ResultKind.PASSWORD, "there is no stash file"),

  /** Code 104, which tells no more than its name. */
  PASSWORD_CHANGE_MATCH(104),

  /** Code 105, which tells no more than its name. */
  KEYDB_NULL(105),

  /** Code 106, which tells no more than its name. */
  REQKEYDB_NULL(106),

  /** Code 107, which tells no more than its name. */
  KEYDB_TRUSTCA_NULL(107),

  /** Code 108: no pending request belongs to the certificate. */
  REQKEY_FOR_CERT_NULL(108, ResultKind.NOT_FOUND, "no pending request belongs to the certificate"),

  /** Code 109, which tells no more than its name. */
  KEYDB_PRIVATE_KEY_NULL(109),

  /** Code 110: the key database has no default key. */
  KEYDB_DEFAULT_KEY_NULL(110, ResultKind.REFUSED, "the key database has no default key"),

  /** Code 111: the entry has no private key. */
  KEYREC_PRIVATE_KEY_NULL(111, ResultKind.REFUSED, "the entry has no private key"),

  /** Code 112: the entry has no certificate. */
  KEYREC_CERTIFICATE_NULL(112, ResultKind.REFUSED, "the entry has no certificate"),

  /** Code 113, which tells no more than its name. */
  CRLS_NULL(113),

  /** Code 114: this is no name for a key database. */
  INVALID_KEYDB_NAME(114, ResultKind.ARGUMENT, "this is no name for a key database"),

  /** Code 115, which tells no more than its name. */
  UNDEFINED_KEY_TYPE(115),

  /** Code 116: the distinguished name cannot be used. */
  INVALID_DN_INPUT(116, ResultKind.ARGUMENT, "the distinguished name cannot be used"),

  /** Code 117: nothing has this label. */
  KEY_GET_BY_LABEL(117, ResultKind.NOT_FOUND, "nothing has this label"),

  /** Code 118, which tells no more than its name. */
  LABEL_LIST_CORRUPT(118),

  /** Code 119: the file is no valid PKCS#12. */
  INVALID_PKCS12_DATA(119, ResultKind.UNREADABLE, "the file is no valid PKCS#12"),

  /** Code 120: the password is wrong, or the data is damaged. */
  PKCS12_PWD_CORRUPTION(120, ResultKind.PASSWORD, "the password is wrong, or the data is damaged"),

  /** Code 121: there is no such form of export. */
  EXPORT_TYPE(121, ResultKind.ARGUMENT, "there is no such form of export"),

  /** Code 122: the PKCS#12 file is encrypted in a way that is not supported. */
  PBE_ALG_UNSUPPORT(
      122, ResultKind.UNSUPPORTED, "the PKCS#12 file is encrypted in a way that is not supported"),

  /** Code 123, which tells no more than its name. */
  KYR2KDB(123),

  /** Code 124: the key ring would be too large. */
  KDB2KYR(124, ResultKind.UNSUPPORTED, "the key ring would be too large"),

  /** Code 125: the certificate cannot be issued. */
  ISSUING_CERTIFICATE(125, ResultKind.REFUSED, "the certificate cannot be issued"),

  /** Code 126: the chain of issuers is incomplete. */
  FIND_ISSUER_CHAIN(126, ResultKind.VALIDATION, "the chain of issuers is incomplete"),

  /** Code 127, which tells no more than its name. */
  WEBDB_DATA_BAD_FORMAT(127),

  /** Code 128, which tells no more than its name. */
  WEBDB_NOTHING_TO_WRITE(128),

  /** Code 129: the validity is too long. */
  EXPIRE_DAYS_TOO_LARGE(129, ResultKind.ARGUMENT, "the validity is too long"),

  /** Code 130: the password is too short. */
  PWD_TOO_SHORT(130, ResultKind.PASSWORD, "the password is too short"),

  /** Code 131: the password has no digit. */
  PWD_NO_NUMBER(131, ResultKind.PASSWORD, "the password has no digit"),

  /** Code 132: the password has no special character. */
  PWD_NO_CONTROL_KEY(132, ResultKind.PASSWORD, "the password has no special character"),

  /** Code 133: the signature algorithm is not supported. */
  SIGNATURE_ALGORITHM(133, ResultKind.UNSUPPORTED, "the signature algorithm is not supported"),

  /** Code 134: a store of this type cannot be used here. */
  INVALID_DATABASE_TYPE(134, ResultKind.ARGUMENT, "a store of this type cannot be used here"),

  /** Code 135: only a token takes a secondary key database. */
  SECONDARY_KEYDB_TO_OTHER(135, ResultKind.ARGUMENT, "only a token takes a secondary key database"),

  /** Code 136: the token has no secondary key database. */
  NO_SECONDARY_KEYDB(136, ResultKind.REFUSED, "the token has no secondary key database"),

  /** Code 137: no token has this label, or no certificate store this name. */
  CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST(
      137, ResultKind.NOT_FOUND, "no token has this label, or no certificate store this name"),

  /** Code 138: the token wants a PIN. */
  CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED(138, ResultKind.PASSWORD, "the token wants a PIN"),

  /** Code 139: the token takes no PIN, or the certificate store no password. */
  CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED(
      139, ResultKind.PASSWORD, "the token takes no PIN, or the certificate store no password"),

  /** Code 140: the PKCS#11 module cannot be loaded. */
  CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED(
      140, ResultKind.NOT_FOUND, "the PKCS#11 module cannot be loaded"),

  /** Code 141: the token cannot do this. */
  CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT(141, ResultKind.UNSUPPORTED, "the token cannot do this"),

  /** Code 142: the token or its module failed. */
  CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED(142, ResultKind.SYSTEM, "the token or its module failed"),

  /** Code 143, which tells no more than its name. */
  LDAP_USER_NOT_FOUND(143),

  /** Code 144, which tells no more than its name. */
  LDAP_INVALID_PASSWORD(144),

  /** Code 145, which tells no more than its name. */
  LDAP_QUERY_ENTRY_FAILED(145),

  /** Code 146: the chain of certificates is not valid. */
  INVALID_CERT_CHAIN(146, ResultKind.VALIDATION, "the chain of certificates is not valid"),

  /** Code 147: the root of the chain is not trusted. */
  CERT_ROOT_NOT_TRUSTED(147, ResultKind.VALIDATION, "the root of the chain is not trusted"),

  /** Code 148, which tells no more than its name. */
  CERT_REVOKED(148),

  /** Code 149: an object on the token cannot be read, made or changed. */
  CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED(
      149, ResultKind.SYSTEM, "an object on the token cannot be read, made or changed"),

  /** Code 150, which tells no more than its name. */
  NO_AVAILABLE_CRL_DATASOURCE(150),

  /** Code 151: there is no token. */
  NO_TOKEN_PRESENT(151, ResultKind.NOT_FOUND, "there is no token");

  // The constants above are written by script/result-codes.

  private static final String NO_WORDS = "the operation failed";

  private static final Map<Integer, ResultCode> BY_CODE =
      Arrays.stream(values())
          .collect(Collectors.toUnmodifiableMap(ResultCode::code, Function.identity()));

  private final int code;
  private final ResultKind kind;
  private final String explanation;

  ResultCode(int code) {
    this(code, ResultKind.OTHER, NO_WORDS);
  }

  ResultCode(int code, ResultKind kind, String explanation) {
    this.code = code;
    this.kind = kind;
    this.explanation = explanation;
  }

  /**
   * The constant of a number.
   *
   * @param code a number that the library answered
   * @return its constant; empty for 0, which is success, and for numbers that are no result codes
   */
  public static Optional<ResultCode> of(int code) {
    return Optional.ofNullable(BY_CODE.get(code));
  }

  /**
   * The number that the library answers.
   *
   * @return a number from 1 to 151
   */
  public int code() {
    return code;
  }

  /**
   * What kind of failure it is.
   *
   * @return {@link ResultKind#OTHER} for a code that tells no more than its name
   */
  public ResultKind kind() {
    return kind;
  }

  /**
   * What happened, in words that follow a file name and a colon.
   *
   * @return a clause without a full stop; a general remark for a code that tells no more than its
   *     name
   */
  public String explanation() {
    return explanation;
  }

  /** The words of a number that the library answered, even of one that is no result code. */
  static String explanationOf(int code) {
    return of(code).map(ResultCode::explanation).orElse(NO_WORDS);
  }
}
