package com.nelo.zel.vosmar.cli;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The jar and its launcher as people start them, each in a process of its own. */
class LauncherTest {
  private static final Path HOME = Path.of(System.getProperty("vosmar.test.home"));
  private static final Map<String, String> PASSWORD = Map.of("PWD_VAR", Vosmar.PASSWORD);

  @TempDir Path folder;

  @Test
  void theLauncherTellsTheVersion() throws Exception {
    assertTrue(Programs.run(launcher(), "--version").matches("vosmar \\d+\\.\\d+\\.\\d+\n"));
  }

  @Test
  void theLauncherWorksThroughASymbolicLink() throws Exception {
    Path link = Files.createSymbolicLink(folder.resolve("vosmar"), launcher());

    assertTrue(Programs.run(link, "--version").startsWith("vosmar "));
  }

  @Test
  void aShellCompletesTheCommands() throws Exception {
    String script = Programs.run(launcher(), "generate-completion");

    assertTrue(script.contains("self-sign"), script);
    Path file = Files.writeString(folder.resolve("completion"), script);
    Programs.run("bash", "-n", file);
  }

  @Test
  void theJarAloneUnpacksItsLibrariesAndLeavesNothingBehind() throws Exception {
    Path jar = Files.copy(HOME.resolve("vosmar.jar"), folder.resolve("vosmar.jar"));
    Path temporary = Files.createDirectory(folder.resolve("tmp"));
    Path database = folder.resolve("server.kdb");

    String output =
        Programs.run(
            PASSWORD,
            Programs.jdk("java"),
            "-Djava.io.tmpdir=" + temporary,
            "-cp",
            jar + ":" + System.getProperty("vosmar.test.picocli"),
            Main.class.getName(),
            "db",
            "create",
            database,
            "--password-env",
            "PWD_VAR");

    assertEquals("created " + database + "\n", output);
    try (var files = Files.list(temporary)) {
      assertEquals(0, files.filter(file -> !file.toString().contains("hsperfdata")).count());
    }
  }

  @Test
  void aFolderWithoutTheLibraryIsNotSearchedAround() throws Exception {
    AssertionError failure =
        assertThrows(
            AssertionError.class,
            () ->
                Programs.run(
                    PASSWORD,
                    Programs.jdk("java"),
                    "-Dvosmar.library.dir=" + folder,
                    "-cp",
                    HOME.resolve("vosmar.jar") + ":" + System.getProperty("vosmar.test.picocli"),
                    Main.class.getName(),
                    "db",
                    "create",
                    folder.resolve("server.kdb"),
                    "--password-env",
                    "PWD_VAR"));

    assertTrue(
        failure.getMessage().contains(" ended with 1: vosmar: Can't load library: " + folder),
        failure.getMessage());
  }

  @Test
  void theNativeStoryIsToldOnRequest() throws Exception {
    Path database = folder.resolve("server.kdb");

    String output =
        Programs.run(
            Map.of("PWD_VAR", Vosmar.PASSWORD, "VOSMAR_JNI_DEBUG", ""),
            launcher(),
            "db",
            "create",
            database,
            "--password-env",
            "PWD_VAR");

    assertEquals(
        """
        JNI_DEBUG......debugMsgEnvExist=
        JNI_DEBUG......staticInit: DLL_PROCESS_ATTACH
        JNI_KMSystem::ZELKMInitDebug 0000, entered ...
        JNI_DEBUG......Entered KMSystem_c_ZELKMInit().
        JNI_DEBUG......cKeyDbFileName = %s
        JNI_DEBUG......cKeyDbPwd = correct horse 1!
        """
            .formatted(database),
        output.substring(0, output.indexOf("created ")));
  }

  private static Path launcher() {
    return HOME.resolve("bin").resolve("vosmar");
  }
}
