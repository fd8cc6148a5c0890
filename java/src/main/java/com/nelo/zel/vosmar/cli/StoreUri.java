package com.nelo.zel.vosmar.cli;

/** A certificate store as commands take it, such as {@code store:CurrentUser/My}. */
record StoreUri(String name) {
  private static final String SCHEME = "store:";

  static boolean isOne(String text) {
    return text.startsWith(SCHEME);
  }

  static StoreUri parse(String text) {
    return new StoreUri(text.substring(SCHEME.length()));
  }

  @Override
  public String toString() {
    return SCHEME + name;
  }
}
