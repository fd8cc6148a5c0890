/**
 * The older classes for key databases, for programs that were written to them. New programs use
 * {@code com.nelo.zel.vosmar.basic}, which does more: requests, tokens and certificate stores are
 * not known here.
 *
 * <p>The items of this package stand for themselves: none holds an object of the newer package.
 */
package com.nelo.security.cmskeystore;
