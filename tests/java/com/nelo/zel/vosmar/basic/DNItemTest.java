package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import javax.security.auth.x500.X500Principal;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

class DNItemTest {
  @Test
  void readsAllSevenAttributes() {
    DNItem name = DNItem.parse("CN=host,OU=Lab,O=Example,L=Ulm,ST=BW,postalCode=89073,C=DE");

    assertEquals("host", name.commonName());
    assertEquals("Lab", name.organisationalUnit());
    assertEquals("Example", name.organisation());
    assertEquals("Ulm", name.locality());
    assertEquals("BW", name.state());
    assertEquals("89073", name.postalCode());
    assertEquals("DE", name.country());
  }

  @Test
  void leavesAbsentAttributesNull() {
    DNItem name = DNItem.parse("CN=host");

    assertNull(name.organisation());
    assertNull(name.country());
    assertTrue(name.optionalFields().isEmpty());
    assertArrayEquals(new byte[0], name.der());
  }

  @Test
  void acceptsAnyOrderAndCaseAndTheOtherNamesOfAttributes() {
    DNItem name = DNItem.parse("c=DE, s=Bayern, pc=80331, 2.5.4.3=host");

    assertEquals("CN=host,postalCode=80331,ST=Bayern,C=DE", name.toString());
  }

  @Test
  void unescapesValuesAndEscapesThemAgain() {
    DNItem name = DNItem.parse("CN=Doe\\, Jane,O=A\\+B");

    assertEquals("Doe, Jane", name.commonName());
    assertEquals("A+B", name.organisation());
    assertEquals(name.commonName(), DNItem.parse(name.toString()).commonName());
  }

  @ParameterizedTest
  @ValueSource(
      strings = {
        "", "host", "CN", "CN=", "CN=a,CN=b", "CN=a+O=b", "CN=a,DC=b", "C=Germany", "CN=#0403"
      })
  void refusesWhatIsNoSuchName(String text) {
    assertThrows(IllegalArgumentException.class, () -> DNItem.parse(text));
  }

  @Test
  void aBuilderWithoutAttributesMakesNoName() {
    assertThrows(IllegalArgumentException.class, () -> DNItem.builder().build());
  }

  @Test
  void aNameWithEncodingShowsAttributesBeyondTheSeven() throws ReflectiveOperationException {
    byte[] der = new X500Principal("EMAILADDRESS=a@example.com, CN=host").getEncoded();

    assertEquals("emailAddress=a@example.com,CN=host", fromLibrary("host", der).toString());
  }

  private static DNItem fromLibrary(String cn, byte[] der) throws ReflectiveOperationException {
    var constructor =
        DNItem.class.getDeclaredConstructor(
            String.class,
            String.class,
            String.class,
            String.class,
            String.class,
            String.class,
            String.class,
            String.class,
            byte[].class);
    constructor.setAccessible(true);
    return constructor.newInstance(cn, null, null, null, null, null, null, null, der);
  }
}
