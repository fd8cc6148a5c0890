/**
 * What the items of {@code com.nelo.zel.vosmar.basic} and those of {@code com.nelo.security.cmskeystore}
 * have in common.
 *
 * <p>Programs meet these classes as the items of those two packages; there are no others. An item that
 * holds other items holds those of its own package: the type parameters name them.
 */
package com.nelo.zel.vosmar.item;
