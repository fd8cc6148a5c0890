package com.nelo.zel.vosmar.cli.options;

import static java.nio.charset.StandardCharsets.UTF_8;

import java.net.URLDecoder;
import java.net.URLEncoder;
import java.util.HashMap;
import java.util.Map;

/**
 * A token as a PKCS&nbsp;#11 URI (RFC&nbsp;7512), such as {@code
 * pkcs11:token=mine?module-name=softhsm2}. The other attributes that such a URI may have are
 * refused: tokens are known by their labels.
 *
 * @param label the label of the token
 * @param module its module, by file or by name
 */
public record TokenUri(String label, String module) {
  private static final String SCHEME = "pkcs11:";
  private static final String LABEL = "token";
  private static final String MODULE_NAME = "module-name";
  private static final String MODULE_PATH = "module-path";

  /**
   * Whether a text is meant to be such a URI.
   *
   * @param text what a person wrote
   * @return true when it begins as one
   */
  public static boolean isOne(String text) {
    return text.regionMatches(true, 0, SCHEME, 0, SCHEME.length());
  }

  /**
   * Reads a URI.
   *
   * @param text what a person wrote
   * @return the token
   * @throws IllegalArgumentException when it does not name one token and its module
   */
  public static TokenUri parse(String text) {
    if (!isOne(text)) {
      throw incomplete(text);
    }
    String[] halves = text.substring(SCHEME.length()).split("\\?", 2);
    Map<String, String> path = attributes(halves[0], ";");
    Map<String, String> query = attributes(halves.length > 1 ? halves[1] : "", "&");
    String label = path.remove(LABEL);
    String name = query.remove(MODULE_NAME);
    String file = query.remove(MODULE_PATH);
    path.putAll(query);
    for (String other : path.keySet()) {
      throw new IllegalArgumentException(
          text + ": a token is named by " + LABEL + ", " + MODULE_NAME + " and " + MODULE_PATH
              + " alone, not by " + other);
    }
    if (label == null || (name == null) == (file == null)) {
      throw incomplete(text);
    }
    return new TokenUri(label, name == null ? file : name);
  }

  @Override
  public String toString() {
    String attribute = module.indexOf('/') < 0 ? MODULE_NAME : MODULE_PATH;
    return SCHEME + LABEL + "=" + encode(label) + "?" + attribute + "=" + encode(module);
  }

  private static IllegalArgumentException incomplete(String text) {
    return new IllegalArgumentException(
        text + ": name the token and its module, as in pkcs11:token=mine?module-name=softhsm2");
  }

  private static Map<String, String> attributes(String part, String separator) {
    Map<String, String> found = new HashMap<>();
    for (String attribute : part.isEmpty() ? new String[0] : part.split(separator)) {
      String[] halves = attribute.split("=", 2);
      if (halves.length < 2 || found.put(halves[0], decode(halves[1])) != null) {
        throw new IllegalArgumentException(attribute + ": not an attribute of a PKCS #11 URI");
      }
    }
    return found;
  }

  // The Java platform has the encoding of forms, which differs in the blank.

  private static String decode(String value) {
    return URLDecoder.decode(value.replace("+", "%2B"), UTF_8);
  }

  private static String encode(String value) {
    return URLEncoder.encode(value, UTF_8).replace("+", "%20").replace("%2F", "/");
  }
}
