#ifndef ZEL_SYS_API_H_
#define ZEL_SYS_API_H_

/** ZEL_SYS_API marks what libzel7sys_64 offers to the libraries above it; all else is hidden. */
#define ZEL_SYS_API __attribute__((visibility("default")))

#endif  // ZEL_SYS_API_H_
