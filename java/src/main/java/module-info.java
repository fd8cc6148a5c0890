/** Key databases: their Java classes and the native library below them. */
module com.nelo.zel.vosmar {
  requires java.naming;

  exports com.nelo.zel.vosmar.basic;
}
