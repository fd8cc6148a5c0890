#ifndef ZEL_CMS_API_H_
#define ZEL_CMS_API_H_

/** ZEL_CMS_API marks what libzel7cms_64 offers to the library above it; all else is hidden. */
#define ZEL_CMS_API __attribute__((visibility("default")))

#endif  // ZEL_CMS_API_H_
