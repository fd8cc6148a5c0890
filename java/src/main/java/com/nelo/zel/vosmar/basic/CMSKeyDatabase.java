package com.nelo.zel.vosmar.basic;

/** A key database file. */
public final class CMSKeyDatabase {
  /** Makes an object that names no database yet. */
  public CMSKeyDatabase() {}

  private void addKeyLabel(String label) {}

  private void addReqKeyLabel(String label) {}

  // Lifecycle. Lifetimes are in milliseconds; 0 is no expiry.

  private native int c_CreateNewKeyDb(String keyDbFileName, String keyDbPwd, long expireTime);

  private native int c_CreateNewKeyDbFIPS(String keyDbFileName, String keyDbPwd, long expireTime);

  private native int c_OpenKeyDb(String keyDbFileName, String keyDbPwd);

  private native boolean c_ChangeKeyDbPwd(
      String keyDbFileName, String oldPwd, String newPwd, long expireTime);

  private native boolean c_StashKeyDbPwd(String keyDbFileName, String keyDbPwd);

  private native boolean c_IsPasswordRequired(String keyDbFileName);

  // Queries.

  private native int c_BuildKeyLabelList(String keyDbFileName, String keyDbPwd);

  private native KeyItem c_GetKeyItemByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel, boolean isRequestKey);

  private native KeyItem[] c_GetKeyItemListByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel);

  private native KeyItem[] c_GetKeyItemsByPublicKey(
      String keyDbFileName, String keyDbPwd, int publicKeyLength, byte[] publicKey);

  private native KeyItem c_GetDefaultKeyItem(String keyDbFileName, String keyDbPwd);

  private native boolean c_IsPrivateKeyPresent(
      String keyDbFileName, String keyDbPwd, String keyLabel);

  // Maintenance.

  private native int c_InsertKey(
      String keyDbFileName,
      String keyDbPwd,
      String keyLabel,
      int certLength,
      byte[] certData,
      int keyLength,
      byte[] keyData,
      boolean trusted,
      boolean makeDefault);

  private native int c_InsertReqKey(
      String keyDbFileName,
      String keyDbPwd,
      String keyLabel,
      int requestLength,
      byte[] requestData,
      int keyLength,
      byte[] keyData);

  private native int c_DeleteKeyByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel, boolean isRequestKey);

  private native int c_SetDefaultKey(String keyDbFileName, String keyDbPwd, String keyLabel);

  private native int c_SetKeyTrust(
      String keyDbFileName, String keyDbPwd, String keyLabel, boolean trusted);

  // New certificates and requests.

  private native int c_CreateNewSelfSignedCertificate(
      String keyDbFileName,
      String keyDbPwd,
      int version,
      String keyLabel,
      boolean makeDefault,
      int keySize,
      DNItem subject,
      int validityDays,
      String certFileName,
      boolean isBase64);

  private native int c_CreateNewSelfSignedCertificateSigExt(
      String keyDbFileName,
      String keyDbPwd,
      int version,
      String keyLabel,
      boolean makeDefault,
      int keySize,
      DNItem subject,
      int validityDays,
      int sigAlg,
      int extLength,
      byte[] extData,
      String certFileName,
      boolean isBase64);

  private native int c_CreateNewCertRequest(
      String keyDbFileName,
      String keyDbPwd,
      String keyLabel,
      int keySize,
      DNItem subject,
      String certReqFileName,
      boolean createNew);

  private native int c_CreateNewCertRequestSigExt(
      String keyDbFileName,
      String keyDbPwd,
      String keyLabel,
      int keySize,
      DNItem subject,
      int sigAlg,
      int extLength,
      byte[] extData,
      String certReqFileName,
      boolean createNew);

  private native int c_IssueCertificate(
      String keyDbFileName,
      String keyDbPwd,
      String issuerKeyLabel,
      int version,
      String serialNumber,
      int validityDays,
      String certReqFileName,
      String certFileName,
      boolean isBase64);

  private native int c_IssueCertificateSig(
      String keyDbFileName,
      String keyDbPwd,
      String issuerKeyLabel,
      int version,
      String serialNumber,
      int validityDays,
      int sigAlg,
      String certReqFileName,
      String certFileName,
      boolean isBase64);

  // Private keys outside a database.

  private native EncryptedPrivateKeyInfoItem c_EncryptPrivateKey(
      int length, byte[] privateKey, String password);

  private native PrivateKeyInfoItem c_DecryptPrivateKey(
      int length, byte[] encryptedKey, String password);

  // Import and export.

  private native int c_ExportToPFXFile(
      String keyDbFileName, String keyDbPwd, String pfxFileName, String pfxPwd, String[] labels);

  private native int c_ImportFromPFXFile(
      String keyDbFileName, String keyDbPwd, String pfxFileName, String pfxPwd);

  private native int c_ReceiveCert(
      String keyDbFileName,
      String keyDbPwd,
      String certFileName,
      boolean isBase64,
      boolean makeDefault);

  private native int c_AddCaCert(
      String keyDbFileName,
      String keyDbPwd,
      String keyLabel,
      String certFileName,
      boolean isBase64);

  private native int c_ExtractCert(
      String keyDbFileName,
      String keyDbPwd,
      String keyLabel,
      String certFileName,
      boolean isBase64);

  private native int c_ExtractCertReq(
      String keyDbFileName, String keyDbPwd, String keyLabel, String certReqFileName);

  private native int c_ExtractCertReqSig(
      String keyDbFileName, String keyDbPwd, String keyLabel, int sigAlg, String certReqFileName);

  private native CertificateItem[] c_ExtractCertFromPKCS7Data(
      String certFileName, boolean isBase64);

  // Conversion, renewal and validation.

  private native int c_Kyr2Kdb(
      String kyrFileName, String kyrPwd, String keyDbFileName, String keyDbPwd);

  private native int c_Kdb2Kyr(
      String keyDbFileName, String keyDbPwd, String kyrFileName, String kyrPwd);

  private native boolean c_CheckCertAsRenewal(
      String keyDbFileName, String keyDbPwd, int certLength, byte[] certData);

  private native int c_RenewCert(
      String keyDbFileName, String keyDbPwd, int certLength, byte[] certData);

  private native boolean c_ValidateCertificateChain(
      String keyDbFileName, String keyDbPwd, byte[] certData, int certLength);
}
