package com.nelo.zel.vosmar.internal;

import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;

/**
 * Finds and loads the native library, in this order:
 *
 * <ol>
 *   <li>from the folder that the system property {@code vosmar.library.dir} names, and from nowhere
 *       else when it is set;
 *   <li>from {@code java.library.path};
 *   <li>from the jar, which carries the library and its companions for Linux on x86-64.
 * </ol>
 */
public final class NativeLibrary {
  private static final String DIRECTORY_PROPERTY = "vosmar.library.dir";
  private static final String NAME = "zel7kjni_64";
  private static final String RESOURCES = "/native/linux-x86_64/";

  /** The bridge is last: the companions that it needs lie beside it before it is loaded. */
  private static final List<String> FILES =
      List.of(
          "libzel7sys_64.so", "libzel7cms_64.so", "libzel7km_64.so", System.mapLibraryName(NAME));

  private static boolean loaded;

  private NativeLibrary() {}

  /**
   * Loads the library unless it is loaded.
   *
   * @throws UnsatisfiedLinkError when it is nowhere to be found, or cannot be used
   */
  public static synchronized void load() {
    if (loaded) {
      return;
    }
    String directory = System.getProperty(DIRECTORY_PROPERTY);
    if (directory != null) {
      System.load(Path.of(directory, System.mapLibraryName(NAME)).toAbsolutePath().toString());
    } else {
      loadFromPathOrJar();
    }
    loaded = true;
  }

  private static void loadFromPathOrJar() {
    try {
      System.loadLibrary(NAME);
    } catch (UnsatisfiedLinkError notOnPath) {
      try {
        loadFromJar();
      } catch (IOException | UnsatisfiedLinkError notInJar) {
        UnsatisfiedLinkError error =
            new UnsatisfiedLinkError(
                "no usable native library: " + notOnPath.getMessage() + "; "
                    + notInJar.getMessage());
        error.initCause(notInJar);
        error.addSuppressed(notOnPath);
        throw error;
      }
    }
  }

  private static void loadFromJar() throws IOException {
    if (!System.getProperty("os.name").equals("Linux")
        || !System.getProperty("os.arch").equals("amd64")) {
      throw new IOException("the jar's libraries are for Linux on x86-64");
    }
    // createTempDirectory gives the folder to its owner alone (mode 0700).
    Path directory = Files.createTempDirectory("vosmar");
    try {
      Path library = null;
      for (String file : FILES) {
        library = unpack(file, directory);
      }
      System.load(library.toString());
    } finally {
      // A loaded library stays mapped after its file is gone. Deleting now rather than at exit
      // leaves nothing behind even when the process is killed.
      for (String file : FILES) {
        Files.deleteIfExists(directory.resolve(file));
      }
      Files.delete(directory);
    }
  }

  private static Path unpack(String file, Path directory) throws IOException {
    Path target = directory.resolve(file);
    try (InputStream resource = NativeLibrary.class.getResourceAsStream(RESOURCES + file)) {
      if (resource == null) {
        throw new IOException("the jar carries no " + file);
      }
      Files.copy(resource, target);
    }
    return target;
  }
}
