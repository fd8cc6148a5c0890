package com.nelo.zel.vosmar.basic;

import static java.util.Map.entry;

import java.util.Map;

/** What the result codes mean, in words that follow a file name and a colon. */
final class CodeExplanations {
  private static final Map<Integer, String> TEXTS =
      Map.ofEntries(
          entry(2, "the data is no valid ASN.1"),
          entry(6, "the key database cannot be opened"),
          entry(8, "the key database cannot be created"),
          entry(9, "the file exists already"),
          entry(12, "the entry cannot be read"),
          entry(13, "the key database cannot be written"),
          entry(15, "the key database was written by a newer version"),
          entry(16, "the password is wrong"),
          entry(17, "the file is no key database"),
          entry(18, "the key database is damaged"),
          entry(19, "the record of the password, or the stash file, is damaged"),
          entry(20, "an entry of the key database is damaged or was tampered with"),
          entry(21, "the key is in the key database already"),
          entry(23, "the label is taken"),
          entry(26, "a certificate of this issuer and serial number is in the key database"),
          entry(27, "a certificate of this public key is in the key database"),
          entry(29, "the label is taken"),
          entry(32, "a cryptographic operation failed"),
          entry(35, "signing failed"),
          entry(36, "the signature does not verify"),
          entry(39, "the algorithm is not supported"),
          entry(41, "there are no keys of this size"),
          entry(47, "the certificate is outside its period of validity"),
          entry(50, "the issuer's certificate is not in the key database"),
          entry(53, "the certificate's signature is wrong"),
          entry(62, "key and certificate do not belong together"),
          entry(65, "an argument is missing or wrong"),
          entry(66, "an argument is missing"),
          entry(68, "the old password was refused"),
          entry(69, "the new password was refused"),
          entry(70, "the password has passed its lifetime"),
          entry(74, "the file cannot be read or written"),
          entry(79, "there is not enough memory"),
          entry(80, "this is not supported"),
          entry(86, "the file cannot be opened"),
          entry(87, "the file cannot be opened to be read"),
          entry(88, "the file cannot be opened to be written"),
          entry(89, "the file does not exist"),
          entry(90, "access to the file is not allowed"),
          entry(91, "the file cannot be written"),
          entry(92, "the file cannot be removed"),
          entry(93, "the file is no valid Base64"),
          entry(96, "the file is no valid Base64"),
          entry(101, "the key database does not exist"),
          entry(103, "there is no stash file"),
          entry(108, "no pending request belongs to the certificate"),
          entry(110, "the key database has no default key"),
          entry(111, "the entry has no private key"),
          entry(112, "the entry has no certificate"),
          entry(114, "this is no name for a key database"),
          entry(116, "the distinguished name cannot be used"),
          entry(117, "nothing has this label"),
          entry(119, "the file is no valid PKCS#12"),
          entry(120, "the password is wrong, or the data is damaged"),
          entry(122, "the PKCS#12 file is encrypted in a way that is not supported"),
          entry(125, "the certificate cannot be issued"),
          entry(126, "the chain of issuers is incomplete"),
          entry(129, "the validity is too long"),
          entry(130, "the password is too short"),
          entry(131, "the password has no digit"),
          entry(132, "the password has no special character"),
          entry(133, "the signature algorithm is not supported"),
          entry(137, "no token has this label, or no certificate store this name"),
          entry(138, "the token wants a PIN"),
          entry(139, "the token takes no PIN, or the certificate store no password"),
          entry(140, "the PKCS#11 module cannot be loaded"),
          entry(141, "the token cannot do this"),
          entry(142, "the token or its module failed"),
          entry(146, "the chain of certificates is not valid"),
          entry(147, "the root of the chain is not trusted"),
          entry(149, "an object on the token cannot be read, made or changed"),
          entry(151, "there is no token"));

  private CodeExplanations() {}

  /** The meaning of a code; a general remark for the codes that speak only through their name. */
  static String of(int code) {
    return TEXTS.getOrDefault(code, "the operation failed");
  }
}
