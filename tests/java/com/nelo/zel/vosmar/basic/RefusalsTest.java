package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.StoreKind.DATABASE;
import static com.nelo.zel.vosmar.basic.StoreKind.STORE;
import static com.nelo.zel.vosmar.basic.StoreKind.TOKEN;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.reflect.Method;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Set;
import java.util.TreeSet;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.DynamicTest;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.TestFactory;
import org.junit.jupiter.api.io.TempDir;

/** The same story on each kind of store, with a table of who refuses which part of it. */
class RefusalsTest {
  private static final Set<String> NO_OPERATIONS = Set.of("certificates", "close");

  @TempDir Path folder;
  private OtherParty others;
  private EntryStore store;

  /** An operation, named by its method and what is special about it. */
  private record Step(
      String name, Set<StoreKind> refusedBy, Set<StoreKind> findingNothing, Operation operation) {
    Step(String name, Operation operation, StoreKind... refusedBy) {
      this(name, Set.of(refusedBy), Set.of(), operation);
    }

    /** The same, where some say instead that nothing has the label. */
    Step findsNothingIn(StoreKind... kinds) {
      return new Step(name, refusedBy, Set.of(kinds), operation);
    }

    String method() {
      return name.split(",")[0];
    }
  }

  private interface Operation {
    void run() throws Exception;
  }

  @BeforeEach
  void createAnotherParty() throws Exception {
    others = new OtherParty(folder.resolve("others.kdb"));
    others.request("first");
    others.request("second");
  }

  @AfterEach
  void close() throws Exception {
    others.close();
    if (store != null) {
      store.close();
    }
    TestStores.clear();
  }

  @TestFactory
  Stream<DynamicTest> aDatabase() throws Exception {
    return storyOf(DATABASE);
  }

  @TestFactory
  Stream<DynamicTest> aToken() throws Exception {
    return storyOf(TOKEN);
  }

  @TestFactory
  Stream<DynamicTest> aStore() throws Exception {
    return storyOf(STORE);
  }

  @Test
  void everyOperationIsInTheStory() {
    Set<String> told = story().stream().map(Step::method).collect(Collectors.toSet());
    Set<String> offered =
        Stream.of(EntryStore.class, Certificates.class)
            .flatMap(type -> Stream.of(type.getDeclaredMethods()))
            .filter(method -> !method.isSynthetic())
            .map(Method::getName)
            .filter(name -> !NO_OPERATIONS.contains(name))
            .collect(Collectors.toSet());

    assertEquals(new TreeSet<>(offered), new TreeSet<>(told));
  }

  private Stream<DynamicTest> storyOf(StoreKind kind) throws Exception {
    store = kind.create(folder);
    return story().stream()
        .map(step -> DynamicTest.dynamicTest(step.name(), () -> tell(kind, step)));
  }

  private static void tell(StoreKind kind, Step step) throws Exception {
    if (step.refusedBy().contains(kind)) {
      assertFails(kind.refusal(), step.operation()::run);
    } else if (step.findingNothing().contains(kind)) {
      assertFails(ResultCode.KEY_GET_BY_LABEL, step.operation()::run);
    } else {
      step.operation().run();
    }
  }

  private List<Step> story() {
    return List.of(
        new Step("labels", () -> store.labels()),
        new Step("createSelfSigned", () -> createSelfSigned(certificate("web"))),
        new Step(
            "createSelfSigned, with extensions",
            () -> createSelfSigned(certificate("extended").withExtensions(extensions())),
            TOKEN),
        new Step(
            "createSelfSigned, as the default key",
            () -> createSelfSigned(certificate("default").asDefaultKey()),
            TOKEN,
            STORE),
        new Step(
            "createSelfSigned, into a file",
            () -> createSelfSigned(certificate("file").writtenTo(file("file.pem"), Encoding.DER)),
            TOKEN,
            STORE),
        new Step("key", () -> store.key("web")),
        new Step("isPrivateKeyPresent", () -> assertTrue(store.isPrivateKeyPresent("web"))),
        new Step("keysWithLabel", () -> store.keysWithLabel("web")),
        new Step("keysWithPublicKey", () -> store.keysWithPublicKey(others.publicKey())),
        new Step("personalLabels", () -> store.personalLabels()),
        new Step("signerLabels", () -> store.signerLabels()),
        new Step("defaultKey", () -> store.defaultKey()),
        new Step("setDefaultKey", () -> store.setDefaultKey("web"), TOKEN, STORE),
        new Step("setTrusted", () -> store.setTrusted("web", true), TOKEN, STORE),
        new Step("extract", () -> extract("web"), STORE),
        new Step("insertCertificate", () -> insertCertificate("plain", false)),
        new Step(
            "insertCertificate, trusted", () -> insertCertificate("trusted", true), TOKEN, STORE),
        new Step("insertKey", () -> insertKey("key", false, false)),
        new Step("insertKey, trusted", () -> insertKey("root", true, false), TOKEN, STORE),
        new Step(
            "insertKey, as the default key", () -> insertKey("main", false, true), TOKEN, STORE),
        new Step("add", () -> add("ca")),
        new Step("deleteKey", () -> store.deleteKey("key")),
        new Step("createRequest", () -> createRequest(request("first")), STORE),
        new Step(
            "createRequest, with extensions",
            () -> createRequest(request("extended").withExtensions(extensions())),
            TOKEN,
            STORE),
        new Step("request", () -> store.request("first")).findsNothingIn(STORE),
        new Step("extractRequest", () -> extractRequest("first"), STORE),
        new Step("extractRequest, signed anew", () -> signRequestAnew("first"), STORE),
        new Step("receive", () -> receive("first", false), STORE),
        new Step("isRenewal", () -> assertTrue(isRenewal("first")), STORE),
        new Step("renew", () -> renew("first"), STORE),
        new Step("createRequest, for later", () -> createRequest(request("second")), STORE),
        new Step(
            "receive, as the default key", () -> receive("second", true), TOKEN, STORE),
        new Step("insertRequest", () -> insertRequest("theirs"), STORE),
        new Step("deleteRequest", () -> store.deleteRequest("theirs")).findsNothingIn(STORE),
        new Step("issue", () -> issue("web"), TOKEN, STORE),
        new Step("isValid", () -> isValid("web"), TOKEN, STORE),
        new Step(
            "useSecondaryKeyDatabase",
            () -> store.useSecondaryKeyDatabase(others.file(), TestDatabase.password()),
            DATABASE,
            STORE));
  }

  private static SelfSignedCertificate certificate(String label) {
    return TestDatabase.certificate(label);
  }

  private NewCertificateRequest request(String label) {
    return new NewCertificateRequest(
        label, DNItem.parse("CN=" + label), KeyType.ec(256), others.requestFile(label));
  }

  private static byte[] extensions() {
    return AlternativeNames.parse("DNS:localhost").extensions();
  }

  private void createSelfSigned(SelfSignedCertificate certificate) throws Exception {
    store.certificates().createSelfSigned(certificate);
  }

  private void createRequest(NewCertificateRequest request) throws Exception {
    store.certificates().createRequest(request);
  }

  private void insertCertificate(String label, boolean trusted) throws Exception {
    store.insertCertificate(label, others.certificate(label), trusted);
  }

  private void insertKey(String label, boolean trusted, boolean makeDefault) throws Exception {
    store.insertKey(
        label, others.certificate(label), others.privateKey(label), trusted, makeDefault);
  }

  private void insertRequest(String label) throws Exception {
    KeyItem theirs = others.request(label);
    store.insertRequest(label, theirs.request().der(), others.clear(theirs));
  }

  private void add(String label) throws Exception {
    store.certificates().add(label, others.certificateFile(label), Encoding.BASE64);
  }

  private void receive(String label, boolean makeDefault) throws Exception {
    store.certificates().receive(issued(label), Encoding.DER, makeDefault);
  }

  private boolean isRenewal(String label) throws Exception {
    return store.certificates().isRenewal(Files.readAllBytes(issued(label)));
  }

  private void renew(String label) throws Exception {
    store.certificates().renew(Files.readAllBytes(issued(label)));
  }

  private void extract(String label) throws Exception {
    store.certificates().extract(label, file("extracted.pem"), Encoding.BASE64);
  }

  private void extractRequest(String label) throws Exception {
    store.certificates().extractRequest(label, file("extracted.csr"));
  }

  private void signRequestAnew(String label) throws Exception {
    store
        .certificates()
        .extractRequest(label, SignatureAlgorithm.SHA512, file("extracted.csr"));
  }

  private void issue(String issuer) throws Exception {
    store
        .certificates()
        .issue(new CertificateIssue(issuer, others.requestFile("second"), file("by-store.pem")));
  }

  private void isValid(String label) throws Exception {
    assertTrue(store.certificates().isValid(store.key(label).certificate().der()));
  }

  /** A certificate for the request in the file of that label, whoever wrote it last. */
  private Path issued(String label) throws Exception {
    return others.issue(others.requestFile(label));
  }

  private Path file(String name) {
    return folder.resolve(name);
  }
}
