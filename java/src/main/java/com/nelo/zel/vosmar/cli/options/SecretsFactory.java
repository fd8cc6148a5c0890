package com.nelo.zel.vosmar.cli.options;

import java.lang.reflect.Constructor;
import picocli.CommandLine;
import picocli.CommandLine.IFactory;

/**
 * Makes commands and their parts, and hands the secrets to those whose constructor asks for them.
 */
public final class SecretsFactory implements IFactory {
  private final IFactory others = CommandLine.defaultFactory();
  private final Secrets secrets;

  /**
   * Makes what takes its secrets from there.
   *
   * @param secrets where passwords come from
   */
  public SecretsFactory(Secrets secrets) {
    this.secrets = secrets;
  }

  @Override
  public <K> K create(Class<K> type) throws Exception {
    if (PasswordOptions.class.isAssignableFrom(type)) {
      Constructor<K> constructor = type.getDeclaredConstructor(Secrets.class);
      constructor.setAccessible(true);
      return constructor.newInstance(secrets);
    }
    return others.create(type);
  }
}
