/*
 * The library is built with hidden visibility: what a client may link against is marked with this.
 */
#ifndef FOUNDATION_EXPORT_H
#define FOUNDATION_EXPORT_H

#define DATACACHE_EXPORT __attribute__((visibility("default")))

/* A part of an exported class that is the library's own. */
#define DATACACHE_INTERNAL __attribute__((visibility("hidden")))

#endif /* FOUNDATION_EXPORT_H */
