package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.nelo.zel.vosmar.cli.Programs;
import java.nio.file.Files;
import java.nio.file.Path;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/**
 * A program that is no part of the module uses the items, whose methods are inherited from a
 * package that the module keeps to itself.
 */
class OutsideProgramTest {
  private static final String JAR =
      Path.of(System.getProperty("vosmar.test.home"), "vosmar.jar").toString();

  private static final String PROGRAM =
      """
      import com.nelo.zel.vosmar.basic.*;
      import java.nio.file.Path;
      import java.time.Duration;

      class Outside {
        public static void main(String[] arguments) throws Exception {
          char[] password = "correct horse 1!".toCharArray();
          Path file = Path.of(arguments[0]);
          try (var db = CMSKeyDatabase.create(file, password, Duration.ZERO)) {
            db.certificates().createSelfSigned(
                new SelfSignedCertificate("web", DNItem.parse("CN=www"), KeyType.ec(256)));
            KeyItem item = db.key("web");
            System.out.println(item.label() + " " + item.certificate().subject().commonName());
            System.out.println(db.keysWithLabel("web").stream().map(KeyItem::keySize).toList());
            AutoCloseable key = PrivateKeyEncryption.decrypt(item.privateKey(), password);
            key.close();
          }
          try (var db = com.nelo.security.cmskeystore.CMSKeyDatabase.open(file, password)) {
            System.out.println(db.key("web").certificate().x509().getSubjectX500Principal());
          }
        }
      }
      """;

  @TempDir Path folder;

  @Test
  void itemsAreUsedOnTheModulePath() throws Exception {
    assertEquals("web www\n[256]\nCN=www\n", runOnModulePath(PROGRAM));
  }

  @Test
  void itemsAreUsedOnTheClassPath() throws Exception {
    assertEquals("web www\n[256]\nCN=www\n", run(PROGRAM, "-cp", JAR));
  }

  @Test
  void theSuperclassesOfItemsAreOutOfReach() {
    String heir = "class Heir extends com.nelo.zel.vosmar.item.AbstractBERObject {}";

    AssertionError refusal = assertThrows(AssertionError.class, () -> runOnModulePath(heir));

    assertTrue(
        refusal.getMessage().contains("package com.nelo.zel.vosmar.item is not visible"),
        refusal.getMessage());
  }

  private String runOnModulePath(String program) throws Exception {
    return run(program, "--module-path", JAR, "--add-modules", "com.nelo.zel.vosmar");
  }

  /** Has the java launcher compile and run one source file. */
  private String run(String program, String... options) throws Exception {
    Path source = Files.writeString(folder.resolve("Outside.java"), program);
    Object[] command = new Object[options.length + 3];
    command[0] = Programs.jdk("java");
    System.arraycopy(options, 0, command, 1, options.length);
    command[options.length + 1] = source;
    command[options.length + 2] = folder.resolve("test.kdb");
    return Programs.run(command);
  }
}
