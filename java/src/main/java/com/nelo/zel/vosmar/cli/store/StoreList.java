package com.nelo.zel.vosmar.cli.store;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.MSCertificateStore;
import com.nelo.zel.vosmar.cli.options.CertificateStoreUri;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.List;
import java.util.Map;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;

/** {@code vosmar store list}. */
@Command(name = "list", description = "Lists the certificate stores, as other commands take them.")
final class StoreList implements Callable<Integer> {
  @Mixin private Output output;

  @Override
  public Integer call() throws CMSKeyDatabaseException {
    List<String> stores =
        MSCertificateStore.list().stream()
            .map(name -> new CertificateStoreUri(name).toString())
            .toList();
    output.print(String.join(System.lineSeparator(), stores), Map.of("stores", stores));
    return ExitCode.OK;
  }
}
