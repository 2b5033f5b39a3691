/*
 * The library is built with hidden visibility: what a client may link against is marked with this.
 */
#ifndef FOUNDATION_EXPORT_H
#define FOUNDATION_EXPORT_H

#define DATACACHE_EXPORT __attribute__((visibility("default")))

#endif /* FOUNDATION_EXPORT_H */
