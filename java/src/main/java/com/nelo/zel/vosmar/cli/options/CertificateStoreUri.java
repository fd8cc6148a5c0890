package com.nelo.zel.vosmar.cli.options;

/**
 * A certificate store as commands take it, such as {@code store:CurrentUser/My}.
 *
 * @param name the name of the store
 */
public record CertificateStoreUri(String name) {
  private static final String SCHEME = "store:";

  /**
   * Whether a text names a certificate store.
   *
   * @param text what a person wrote
   * @return true when it begins as such a name
   */
  public static boolean isOne(String text) {
    return text.startsWith(SCHEME);
  }

  /**
   * Reads a name.
   *
   * @param text what a person wrote
   * @return the store
   */
  public static CertificateStoreUri parse(String text) {
    return new CertificateStoreUri(text.substring(SCHEME.length()));
  }

  @Override
  public String toString() {
    return SCHEME + name;
  }
}
