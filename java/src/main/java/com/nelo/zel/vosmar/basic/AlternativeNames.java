package com.nelo.zel.vosmar.basic;

import java.io.ByteArrayOutputStream;
import java.net.IDN;
import java.net.InetAddress;
import java.net.UnknownHostException;
import java.nio.charset.StandardCharsets;
import java.util.HexFormat;
import java.util.Locale;

/**
 * The names of a server or person beside the subject (subjectAltName, RFC&nbsp;5280, section
 * 4.2.1.6). A TLS client compares the host name with these alone:
 *
 * <pre>
 * AlternativeNames.parse("DNS:localhost,IP:127.0.0.1")
 * </pre>
 */
public final class AlternativeNames {
  private static final int SEQUENCE = 0x30;
  private static final int OCTET_STRING = 0x04;
  private static final byte[] SUBJECT_ALT_NAME = HexFormat.of().parseHex("0603551d11");

  // The context-specific tags of a GeneralName.
  private static final int EMAIL = 0x81;
  private static final int DNS = 0x82;
  private static final int URI = 0x86;
  private static final int IP = 0x87;

  private final byte[] extensions;

  private AlternativeNames(byte[] extensions) {
    this.extensions = extensions;
  }

  /**
   * Reads a list of names.
   *
   * @param text names divided by commas, each after its kind: {@code DNS:}, {@code IP:}, {@code
   *     EMAIL:} or {@code URI:}, in any case; an international domain name is taken as it is
   *     written
   * @return the names
   * @throws IllegalArgumentException when a name is not of its kind
   */
  public static AlternativeNames parse(String text) {
    ByteArrayOutputStream names = new ByteArrayOutputStream();
    for (String name : text.split(",", -1)) {
      names.writeBytes(generalName(name.strip()));
    }
    byte[] value = element(OCTET_STRING, element(SEQUENCE, names.toByteArray()));
    byte[] extension = element(SEQUENCE, joined(SUBJECT_ALT_NAME, value));
    return new AlternativeNames(element(SEQUENCE, extension));
  }

  /** The names as a DER {@code Extensions}. */
  byte[] extensions() {
    return extensions;
  }

  private static byte[] generalName(String text) {
    int colon = text.indexOf(':');
    String kind = text.substring(0, Math.max(colon, 0)).toUpperCase(Locale.ROOT);
    String name = text.substring(colon + 1);
    if (name.isEmpty()) {
      throw notAName(text);
    }
    return switch (kind) {
      case "DNS" -> element(DNS, ascii(IDN.toASCII(name)));
      case "IP" -> element(IP, address(name));
      case "EMAIL" -> element(EMAIL, ascii(name));
      case "URI" -> element(URI, ascii(name));
      default -> throw notAName(text);
    };
  }

  private static byte[] ascii(String name) {
    if (!StandardCharsets.US_ASCII.newEncoder().canEncode(name)) {
      throw new IllegalArgumentException(name + " has characters beyond ASCII");
    }
    return name.getBytes(StandardCharsets.US_ASCII);
  }

  private static byte[] address(String name) {
    // Anything else would be looked up as the name of a host.
    if (name.matches("[0-9]+(\\.[0-9]+){3}") || name.matches("[0-9A-Fa-f:.]*:[0-9A-Fa-f:.]*")) {
      try {
        return InetAddress.getByName(name).getAddress();
      } catch (UnknownHostException noAddress) {
        throw notAName("IP:" + name);
      }
    }
    throw notAName("IP:" + name);
  }

  private static IllegalArgumentException notAName(String text) {
    return new IllegalArgumentException(
        text + " is none of DNS:NAME, IP:ADDRESS, EMAIL:ADDRESS and URI:URI");
  }

  /** A DER element: tag, length, content. */
  private static byte[] element(int tag, byte[] content) {
    ByteArrayOutputStream element = new ByteArrayOutputStream();
    element.write(tag);
    if (content.length < 0x80) {
      element.write(content.length);
    } else if (content.length < 0x100) {
      element.write(0x81);
      element.write(content.length);
    } else {
      element.write(0x82);
      element.write(content.length >> 8);
      element.write(content.length);
    }
    element.writeBytes(content);
    return element.toByteArray();
  }

  private static byte[] joined(byte[] first, byte[] second) {
    ByteArrayOutputStream both = new ByteArrayOutputStream();
    both.writeBytes(first);
    both.writeBytes(second);
    return both.toByteArray();
  }
}
