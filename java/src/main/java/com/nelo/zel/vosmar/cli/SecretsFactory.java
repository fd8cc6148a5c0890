package com.nelo.zel.vosmar.cli;

import picocli.CommandLine;
import picocli.CommandLine.IFactory;

/** Makes commands and their parts, and hands the secrets to those whose constructor asks for them. */
final class SecretsFactory implements IFactory {
  private final IFactory others = CommandLine.defaultFactory();
  private final Secrets secrets;

  SecretsFactory(Secrets secrets) {
    this.secrets = secrets;
  }

  @Override
  public <K> K create(Class<K> type) throws Exception {
    if (PasswordOptions.class.isAssignableFrom(type)) {
      return type.getDeclaredConstructor(Secrets.class).newInstance(secrets);
    }
    return others.create(type);
  }
}
