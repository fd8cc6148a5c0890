/**
 * What the packages with native methods are built on. Programs do not see it: it is not exported.
 */
package com.nelo.zel.vosmar.internal;
