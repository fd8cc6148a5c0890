package com.nelo.zel.vosmar.basic;

/** What kind of failure a result code stands for: what a program decides by. */
public enum ResultKind {
  /** A password or PIN is wrong, missing, past its lifetime, refused, or not wanted. */
  PASSWORD,

  /** A file, a token, a label or a request is not there. */
  NOT_FOUND,

  /** A file, a label or a certificate is there already. */
  EXISTS,

  /** A key database or a PKCS#12 file is damaged, or of another kind or version. */
  UNREADABLE,

  /** Data that was handed over is no valid ASN.1 or Base64. */
  MALFORMED,

  /** A certificate, its chain or a signature is not valid. */
  VALIDATION,

  /** An argument is missing or wrong. */
  ARGUMENT,

  /** The algorithm, the format or the operation is not supported. */
  UNSUPPORTED,

  /** The store or the entry lacks what the operation needs. */
  REFUSED,

  /** A file cannot be opened, made, read, written or removed. */
  FILE,

  /** The system, the cryptographic library or a token failed. */
  SYSTEM,

  /** The code tells no more than its name. */
  OTHER
}
