package com.nelo.zel.vosmar.basic;

import java.util.List;

/**
 * The labels of a store, in the order of the store.
 *
 * @param keys those of keys and certificates
 * @param requests those of pending requests
 */
public record Labels(List<String> keys, List<String> requests) {}
