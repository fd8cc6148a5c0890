// The certificate classes of .NET at work on the files of certificate stores.
//
//   mono_certificates.exe show FILE...      thumbprint, whether there is a key, and whether it is
//                                           the certificate's, for each file
//   mono_certificates.exe copy FILE FOLDER  reads a file and writes it as a store has it

using System;
using System.IO;
using System.Security.Cryptography;
using System.Security.Cryptography.X509Certificates;

static class MonoCertificates {
  static bool KeyFits(X509Certificate2 certificate) {
    byte[] text = {1, 2, 3};
    var signer = (RSACryptoServiceProvider)certificate.PrivateKey;
    var verifier = (RSACryptoServiceProvider)certificate.PublicKey.Key;
    return verifier.VerifyData(text, "SHA256", signer.SignData(text, "SHA256"));
  }

  static string Describe(X509Certificate2 certificate) {
    string key = "no key";
    if (certificate.HasPrivateKey) {
      bool isRsa = certificate.GetKeyAlgorithm() == "1.2.840.113549.1.1.1";
      key = !isRsa ? "key" : KeyFits(certificate) ? "fitting key" : "other key";
    }
    return certificate.Thumbprint + " " + key;
  }

  static X509Certificate2 Read(string file) {
    return new X509Certificate2(File.ReadAllBytes(file), "", X509KeyStorageFlags.Exportable);
  }

  static void Main(string[] arguments) {
    if (arguments[0] == "copy") {
      X509Certificate2 certificate = Read(arguments[1]);
      File.WriteAllBytes(Path.Combine(arguments[2], certificate.Thumbprint + ".pfx"),
                         certificate.Export(X509ContentType.Pfx));
      return;
    }
    for (int i = 1; i < arguments.Length; ++i) Console.WriteLine(Describe(Read(arguments[i])));
  }
}
