/**
 * Key databases: their Java classes and the native library below them.
 *
 * <p>The command line alone needs picocli, so a program that uses the classes can do without it. The
 * jar of picocli that Debian ships has no module descriptor, which the compiler would warn about.
 */
@SuppressWarnings("requires-automatic")
module com.nelo.zel.vosmar {
  requires java.naming;
  requires static picocli;

  exports com.nelo.security.cmskeystore;
  exports com.nelo.zel.vosmar.basic;

  opens com.nelo.zel.vosmar.cli to
      picocli;
}
