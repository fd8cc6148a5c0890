import java.io.InputStream;
import java.net.URL;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.KeyStore;
import javax.net.ssl.HttpsURLConnection;
import javax.net.ssl.SSLContext;
import javax.net.ssl.TrustManagerFactory;

/**
 * Asks a server for a page, trusting what a PKCS#12 file says and nobody else:
 *
 * <pre>PFX_PASSWORD=... java HttpsGet.java trust.p12 https://localhost:8443/</pre>
 */
class HttpsGet {
  public static void main(String[] arguments) throws Exception {
    KeyStore trusted = KeyStore.getInstance("PKCS12");
    try (InputStream file = Files.newInputStream(Path.of(arguments[0]))) {
      trusted.load(file, System.getenv("PFX_PASSWORD").toCharArray());
    }
    TrustManagerFactory trust =
        TrustManagerFactory.getInstance(TrustManagerFactory.getDefaultAlgorithm());
    trust.init(trusted);
    SSLContext client = SSLContext.getInstance("TLS");
    client.init(null, trust.getTrustManagers(), null);

    var connection = (HttpsURLConnection) new URL(arguments[1]).openConnection();
    connection.setSSLSocketFactory(client.getSocketFactory());
    connection.setConnectTimeout(10_000);
    connection.setReadTimeout(10_000);
    System.out.println(
        connection.getResponseCode() + " from " + connection.getPeerPrincipal() + " by "
            + connection.getCipherSuite());
  }
}
