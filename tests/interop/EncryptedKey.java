import java.nio.file.Files;
import java.nio.file.Path;
import java.security.AlgorithmParameters;
import javax.crypto.Cipher;
import javax.crypto.EncryptedPrivateKeyInfo;
import javax.crypto.SecretKeyFactory;
import javax.crypto.spec.PBEKeySpec;

/**
 * {@code java EncryptedKey.java encrypt|decrypt SOURCE TARGET PASSWORD}: PBES2 as the JDK has it.
 */
class EncryptedKey {
  public static void main(String[] arguments) throws Exception {
    byte[] source = Files.readAllBytes(Path.of(arguments[1]));
    PBEKeySpec password = new PBEKeySpec(arguments[3].toCharArray());
    boolean encrypting = arguments[0].equals("encrypt");
    Files.write(
        Path.of(arguments[2]),
        encrypting ? encrypt(source, password) : decrypt(source, password));
  }

  private static byte[] encrypt(byte[] key, PBEKeySpec password) throws Exception {
    String algorithm = "PBEWithHmacSHA256AndAES_256";
    Cipher cipher = Cipher.getInstance(algorithm);
    cipher.init(
        Cipher.ENCRYPT_MODE, SecretKeyFactory.getInstance(algorithm).generateSecret(password));
    // Only under the name of the scheme does EncryptedPrivateKeyInfo know the identifier.
    AlgorithmParameters parameters = AlgorithmParameters.getInstance("PBES2");
    parameters.init(cipher.getParameters().getEncoded());
    return new EncryptedPrivateKeyInfo(parameters, cipher.doFinal(key)).getEncoded();
  }

  private static byte[] decrypt(byte[] encrypted, PBEKeySpec password) throws Exception {
    EncryptedPrivateKeyInfo info = new EncryptedPrivateKeyInfo(encrypted);
    // The parameters name the algorithm of PBES2 (RFC 8018), which the factory knows by that name.
    String algorithm = info.getAlgParameters().toString();
    Cipher cipher = Cipher.getInstance(algorithm);
    cipher.init(
        Cipher.DECRYPT_MODE,
        SecretKeyFactory.getInstance(algorithm).generateSecret(password),
        info.getAlgParameters());
    return cipher.doFinal(info.getEncryptedData());
  }
}
