/**
 * Key databases: their Java classes and the native library below them.
 *
 * <p>The command line alone needs picocli, so a program that uses the classes can do without it.
 * The jar of picocli that Debian ships has no module descriptor, which the compiler would warn
 * about.
 */
@SuppressWarnings("requires-automatic")
module com.nelo.zel.vosmar {
  requires java.naming;
  requires static picocli;

  exports com.nelo.security.cmskeystore;
  exports com.nelo.zel.vosmar.basic;

  // Wherever picocli makes objects and sets their fields.
  opens com.nelo.zel.vosmar.cli to
      picocli;
  opens com.nelo.zel.vosmar.cli.cert to
      picocli;
  opens com.nelo.zel.vosmar.cli.command to
      picocli;
  opens com.nelo.zel.vosmar.cli.db to
      picocli;
  opens com.nelo.zel.vosmar.cli.key to
      picocli;
  opens com.nelo.zel.vosmar.cli.options to
      picocli;
  opens com.nelo.zel.vosmar.cli.pfx to
      picocli;
  opens com.nelo.zel.vosmar.cli.store to
      picocli;
  opens com.nelo.zel.vosmar.cli.token to
      picocli;
  opens com.nelo.zel.vosmar.cli.view to
      picocli;
}
