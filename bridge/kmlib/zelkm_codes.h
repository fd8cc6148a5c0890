#ifndef ZELKM_CODES_H_
#define ZELKM_CODES_H_

/**
 * @file
 * The result codes of the key management library.
 *
 * Every operation answers 0 for success or one of the 151 codes below. The list stands once, as
 * (code, name) rows, so that the enumeration, the name table handed to Java and the tests all read
 * the same rows:
 *
 *     #define ROW(code, name) {code, #name},
 *     static const struct { int code; const char* name; } rows[] = {ZELKM_ERROR_CODES(ROW)};
 *     #undef ROW
 */

/** Success: the one answer that is not an error. */
#define ZELKM_OK 0

/** The number of error codes; they run from 1 to this number without a gap. */
#define ZELKM_ERROR_CODE_COUNT 151

// clang-format off
#define ZELKM_ERROR_CODES(ROW) \
  ROW(1, ZELKM_ERR_UNKNOWN)                                          \
  ROW(2, ZELKM_ERR_ASN)                                              \
  ROW(3, ZELKM_ERR_ASN_INITIALIZATION)                               \
  ROW(4, ZELKM_ERR_ASN_PARAMETER)                                    \
  ROW(5, ZELKM_ERR_DATABASE)                                         \
  ROW(6, ZELKM_ERR_DATABASE_OPEN)                                    \
  ROW(7, ZELKM_ERR_DATABASE_RE_OPEN)                                 \
  ROW(8, ZELKM_ERR_DATABASE_CREATE)                                  \
  ROW(9, ZELKM_ERR_DATABASE_ALREADY_EXISTS)                          \
  ROW(10, ZELKM_ERR_DATABASE_DELETE)                                 \
  ROW(11, ZELKM_ERR_DATABASE_NOT_OPENED)                             \
  ROW(12, ZELKM_ERR_DATABASE_READ)                                   \
  ROW(13, ZELKM_ERR_DATABASE_WRITE)                                  \
  ROW(14, ZELKM_ERR_DATABASE_VALIDATION)                             \
  ROW(15, ZELKM_ERR_DATABASE_INVALID_VERSION)                        \
  ROW(16, ZELKM_ERR_DATABASE_INVALID_PASSWORD)                       \
  ROW(17, ZELKM_ERR_DATABASE_INVALID_FILE_TYPE)                      \
  ROW(18, ZELKM_ERR_DATABASE_CORRUPTION)                             \
  ROW(19, ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION)                    \
  ROW(20, ZELKM_ERR_DATABASE_KEY_INTEGRITY)                          \
  ROW(21, ZELKM_ERR_DATABASE_DUPLICATE_KEY)                          \
  ROW(22, ZELKM_ERR_DATABASE_DUPLICATE_KEY_RECORD_ID)                \
  ROW(23, ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL)                    \
  ROW(24, ZELKM_ERR_DATABASE_DUPLICATE_KEY_SIGNATURE)                \
  ROW(25, ZELKM_ERR_DATABASE_DUPLICATE_KEY_UNSIGNED_CERTIFICATE)     \
  ROW(26, ZELKM_ERR_DATABASE_DUPLICATE_KEY_ISSUER_AND_SERIAL_NUMBER) \
  ROW(27, ZELKM_ERR_DATABASE_DUPLICATE_KEY_SUBJECT_PUBLIC_KEY_INFO)  \
  ROW(28, ZELKM_ERR_DATABASE_DUPLICATE_KEY_UNSIGNED_CRL)             \
  ROW(29, ZELKM_ERR_DATABASE_DUPLICATE_LABEL)                        \
  ROW(30, ZELKM_ERR_DATABASE_PASSWORD_ENCRYPTION)                    \
  ROW(31, ZELKM_ERR_DATABASE_LDAP)                                   \
  ROW(32, ZELKM_ERR_CRYPTO)                                          \
  ROW(33, ZELKM_ERR_CRYPTO_ENGINE)                                   \
  ROW(34, ZELKM_ERR_CRYPTO_ALGORITHM)                                \
  ROW(35, ZELKM_ERR_CRYPTO_SIGN)                                     \
  ROW(36, ZELKM_ERR_CRYPTO_VERIFY)                                   \
  ROW(37, ZELKM_ERR_CRYPTO_DIGEST)                                   \
  ROW(38, ZELKM_ERR_CRYPTO_PARAMETER)                                \
  ROW(39, ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM)                    \
  ROW(40, ZELKM_ERR_CRYPTO_INPUT_GREATER_THAN_MODULUS)               \
  ROW(41, ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE)                 \
  ROW(42, ZELKM_ERR_VALIDATION)                                      \
  ROW(43, ZELKM_ERR_VALIDATION_KEY)                                  \
  ROW(44, ZELKM_ERR_VALIDATION_DUPLICATE_EXTENSIONS)                 \
  ROW(45, ZELKM_ERR_VALIDATION_KEY_WRONG_VERSION)                    \
  ROW(46, ZELKM_ERR_VALIDATION_KEY_EXTENSIONS_REQUIRED)              \
  ROW(47, ZELKM_ERR_VALIDATION_KEY_VALIDITY)                         \
  ROW(48, ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD)                  \
  ROW(49, ZELKM_ERR_VALIDATION_KEY_VALIDITY_PRIVATE_KEY_USAGE)       \
  ROW(50, ZELKM_ERR_VALIDATION_KEY_ISSUER_NOT_FOUND)                 \
  ROW(51, ZELKM_ERR_VALIDATION_KEY_MISSING_REQUIRED_EXTENSIONS)      \
  ROW(52, ZELKM_ERR_VALIDATION_KEY_BASIC_CONSTRAINTS)                \
  ROW(53, ZELKM_ERR_VALIDATION_KEY_SIGNATURE)                        \
  ROW(54, ZELKM_ERR_VALIDATION_KEY_ROOT_KEY_NOT_TRUSTED)             \
  ROW(55, ZELKM_ERR_VALIDATION_KEY_IS_REVOKED)                       \
  ROW(56, ZELKM_ERR_VALIDATION_KEY_AUTHORITY_KEY_IDENTIFIER)         \
  ROW(57, ZELKM_ERR_VALIDATION_KEY_PRIVATE_KEY_USAGE_PERIOD)         \
  ROW(58, ZELKM_ERR_VALIDATION_SUBJECT_ALTERNATIVE_NAME)             \
  ROW(59, ZELKM_ERR_VALIDATION_ISSUER_ALTERNATIVE_NAME)              \
  ROW(60, ZELKM_ERR_VALIDATION_KEY_USAGE)                            \
  ROW(61, ZELKM_ERR_VALIDATION_KEY_UNKNOWN_CRITICAL_EXTENSION)       \
  ROW(62, ZELKM_ERR_VALIDATION_KEY_PAIR)                             \
  ROW(63, ZELKM_ERR_VALIDATION_CRL)                                  \
  ROW(64, ZELKM_ERR_MUTEX)                                           \
  ROW(65, ZELKM_ERR_PARAMETER)                                       \
  ROW(66, ZELKM_ERR_NULL_PARAMETER)                                  \
  ROW(67, ZELKM_ERR_NUMBER_SIZE)                                     \
  ROW(68, ZELKM_ERR_OLD_PASSWORD)                                    \
  ROW(69, ZELKM_ERR_NEW_PASSWORD)                                    \
  ROW(70, ZELKM_ERR_PASSWORD_EXPIRATION_TIME)                        \
  ROW(71, ZELKM_ERR_THREAD)                                          \
  ROW(72, ZELKM_ERR_THREAD_CREATE)                                   \
  ROW(73, ZELKM_ERR_THREAD_WAIT_FOR_EXIT)                            \
  ROW(74, ZELKM_ERR_IO)                                              \
  ROW(75, ZELKM_ERR_LOAD)                                            \
  ROW(76, ZELKM_ERR_PKCS11)                                          \
  ROW(77, ZELKM_ERR_NOT_INITIALIZED)                                 \
  ROW(78, ZELKM_ERR_DB_TABLE_CORRUPTED)                              \
  ROW(79, ZELKM_ERR_MEMORY_ALLOCATE)                                 \
  ROW(80, ZELKM_ERR_UNSUPPORTED_OPTION)                              \
  ROW(81, ZELKM_ERR_GET_TIME)                                        \
  ROW(82, ZELKM_ERR_CREATE_MUTEX)                                    \
  ROW(83, ZELKM_ERR_CMDCAT_OPEN)                                     \
  ROW(84, ZELKM_ERR_ERRCAT_OPEN)                                     \
  ROW(85, ZELKM_ERR_FILENAME_NULL)                                   \
  ROW(86, ZELKM_ERR_FILE_OPEN)                                       \
  ROW(87, ZELKM_ERR_FILE_OPEN_TO_READ)                               \
  ROW(88, ZELKM_ERR_FILE_OPEN_TO_WRITE)                              \
  ROW(89, ZELKM_ERR_FILE_OPEN_NOT_EXIST)                             \
  ROW(90, ZELKM_ERR_FILE_OPEN_NOT_ALLOWED)                           \
  ROW(91, ZELKM_ERR_FILE_WRITE)                                      \
  ROW(92, ZELKM_ERR_FILE_REMOVE)                                     \
  ROW(93, ZELKM_ERR_BASE64_INVALID_DATA)                             \
  ROW(94, ZELKM_ERR_BASE64_INVALID_MSGTYPE)                          \
  ROW(95, ZELKM_ERR_BASE64_ENCODING)                                 \
  ROW(96, ZELKM_ERR_BASE64_DECODING)                                 \
  ROW(97, ZELKM_ERR_DN_TAG_NULL)                                     \
  ROW(98, ZELKM_ERR_DN_CN_NULL)                                      \
  ROW(99, ZELKM_ERR_DN_C_NULL)                                       \
  ROW(100, ZELKM_ERR_INVALID_DB_HANDLE)                              \
  ROW(101, ZELKM_ERR_KEYDB_NOT_EXIST)                                \
  ROW(102, ZELKM_ERR_KEYPAIRDB_NOT_EXIST)                            \
  ROW(103, ZELKM_ERR_PWDFILE_NOT_EXIST)                              \
  ROW(104, ZELKM_ERR_PASSWORD_CHANGE_MATCH)                          \
  ROW(105, ZELKM_ERR_KEYDB_NULL)                                     \
  ROW(106, ZELKM_ERR_REQKEYDB_NULL)                                  \
  ROW(107, ZELKM_ERR_KEYDB_TRUSTCA_NULL)                             \
  ROW(108, ZELKM_ERR_REQKEY_FOR_CERT_NULL)                           \
  ROW(109, ZELKM_ERR_KEYDB_PRIVATE_KEY_NULL)                         \
  ROW(110, ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL)                         \
  ROW(111, ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL)                        \
  ROW(112, ZELKM_ERR_KEYREC_CERTIFICATE_NULL)                        \
  ROW(113, ZELKM_ERR_CRLS_NULL)                                      \
  ROW(114, ZELKM_ERR_INVALID_KEYDB_NAME)                             \
  ROW(115, ZELKM_ERR_UNDEFINED_KEY_TYPE)                             \
  ROW(116, ZELKM_ERR_INVALID_DN_INPUT)                               \
  ROW(117, ZELKM_ERR_KEY_GET_BY_LABEL)                               \
  ROW(118, ZELKM_ERR_LABEL_LIST_CORRUPT)                             \
  ROW(119, ZELKM_ERR_INVALID_PKCS12_DATA)                            \
  ROW(120, ZELKM_ERR_PKCS12_PWD_CORRUPTION)                          \
  ROW(121, ZELKM_ERR_EXPORT_TYPE)                                    \
  ROW(122, ZELKM_ERR_PBE_ALG_UNSUPPORT)                              \
  ROW(123, ZELKM_ERR_KYR2KDB)                                        \
  ROW(124, ZELKM_ERR_KDB2KYR)                                        \
  ROW(125, ZELKM_ERR_ISSUING_CERTIFICATE)                            \
  ROW(126, ZELKM_ERR_FIND_ISSUER_CHAIN)                              \
  ROW(127, ZELKM_ERR_WEBDB_DATA_BAD_FORMAT)                          \
  ROW(128, ZELKM_ERR_WEBDB_NOTHING_TO_WRITE)                         \
  ROW(129, ZELKM_ERR_EXPIRE_DAYS_TOO_LARGE)                          \
  ROW(130, ZELKM_ERR_PWD_TOO_SHORT)                                  \
  ROW(131, ZELKM_ERR_PWD_NO_NUMBER)                                  \
  ROW(132, ZELKM_ERR_PWD_NO_CONTROL_KEY)                             \
  ROW(133, ZELKM_ERR_SIGNATURE_ALGORITHM)                            \
  ROW(134, ZELKM_ERR_INVALID_DATABASE_TYPE)                          \
  ROW(135, ZELKM_ERR_SECONDARY_KEYDB_TO_OTHER)                       \
  ROW(136, ZELKM_ERR_NO_SECONDARY_KEYDB)                             \
  ROW(137, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST)            \
  ROW(138, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED)          \
  ROW(139, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED)      \
  ROW(140, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED)         \
  ROW(141, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT)                \
  ROW(142, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED)            \
  ROW(143, ZELKM_ERR_LDAP_USER_NOT_FOUND)                            \
  ROW(144, ZELKM_ERR_LDAP_INVALID_PASSWORD)                          \
  ROW(145, ZELKM_ERR_LDAP_QUERY_ENTRY_FAILED)                        \
  ROW(146, ZELKM_ERR_INVALID_CERT_CHAIN)                             \
  ROW(147, ZELKM_ERR_CERT_ROOT_NOT_TRUSTED)                          \
  ROW(148, ZELKM_ERR_CERT_REVOKED)                                   \
  ROW(149, ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED)           \
  ROW(150, ZELKM_ERR_NO_AVAILABLE_CRL_DATASOURCE)                    \
  ROW(151, ZELKM_ERR_NO_TOKEN_PRESENT)
// clang-format on

/** The error codes by name, `ZELKM_ERR_UNKNOWN` (1) to `ZELKM_ERR_NO_TOKEN_PRESENT` (151). */
enum {
#define ZELKM_CODE_ENUMERATOR(code, name) name = (code),
  ZELKM_ERROR_CODES(ZELKM_CODE_ENUMERATOR)
#undef ZELKM_CODE_ENUMERATOR
};

#endif  // ZELKM_CODES_H_
