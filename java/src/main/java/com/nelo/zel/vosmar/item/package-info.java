/**
 * What the items of {@code com.nelo.zel.vosmar.basic} and those of {@code
 * com.nelo.security.cmskeystore} have in common.
 *
 * <p>Programs meet these classes as the items of those two packages, whose methods the inherited
 * ones are to them; so this package is not exported, and the items say that this is meant so with
 * {@code SuppressWarnings("exports")}. An item that holds other items holds those of its own
 * package: the type parameters name them.
 */
package com.nelo.zel.vosmar.item;
