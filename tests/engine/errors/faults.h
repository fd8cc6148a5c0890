#ifndef ZEL_TESTS_ENGINE_ERRORS_FAULTS_H_
#define ZEL_TESTS_ENGINE_ERRORS_FAULTS_H_

/**
 * @file
 * What a machine does rarely: no memory left, a disk that does not answer, a file that
 * is closed to its user. A fault is
 * planned, and in force from begin() to end():
 *
 *     faults::failAllocation();
 *     faults::begin();
 *     const int code = ZELKM_DeleteKey(handle, "server");  // ZELKM_ERR_MEMORY_ALLOCATE
 *     faults::end();
 */

namespace zel::km::errors::faults {

/** The next allocation of this thread by operator new fails. */
void failAllocation();

/** SQLite's openings, or readings, of any database answer the SQLite code. */
void failOpening(int sqliteCode);
void failReading(int sqliteCode);

/** Another program has every database locked, for all or for writing, and keeps it. */
void lockOut();
void lockOutOfWriting();

/** Files grow no more. */
void fillDisk();

/** Nobody may do more than the modes of the files let their owner do, root neither. */
void bindByModes();

/** OpenSSL finds none of its algorithms. */
void failCryptography();

void begin();
void end();

}  // namespace zel::km::errors::faults

#endif  // ZEL_TESTS_ENGINE_ERRORS_FAULTS_H_
