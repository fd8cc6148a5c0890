package com.nelo.zel.vosmar.basic;

/** A key database of the WEBDB type. */
public final class WEBDBKeyDatabase {
  /** Makes an object through which databases are asked about. */
  public WEBDBKeyDatabase() {}

  private native boolean c_IsPasswordRequired(String keyDbFileName);
}
