#pragma once

#include <cstdint>

// The record manager's C interface: the functions that the suite's own library exports, and
// that the program's library (tqzdbm32) exports over the embedded archive store. Numbers go
// in as 32-bit integers, results come back as 16-bit ones, in the standard calling
// convention on Windows. Record buffers are the archive's record length; a start key is a
// text ended by a NUL.
#if defined(_WIN32)
#define PG_RECORD_MANAGER_CALL __stdcall
#else
#define PG_RECORD_MANAGER_CALL
#endif

namespace pg::archives::abi {

using AperturaFileFn = int16_t(PG_RECORD_MANAGER_CALL *)(int32_t handle, int32_t archive,
                                                         int32_t mode);
using ChiusuraFileFn = int16_t(PG_RECORD_MANAGER_CALL *)(int32_t handle, int32_t archive);
using LetturaEqRec32Fn = int16_t(PG_RECORD_MANAGER_CALL *)(int32_t handle, int32_t archive,
                                                           int32_t key, char *record);
using LetturaFirstRec32Fn = int16_t(PG_RECORD_MANAGER_CALL *)(int32_t handle, int32_t archive,
                                                              int32_t key, char *record,
                                                              const char *startKey);
using LetturaNextRec32Fn = int16_t(PG_RECORD_MANAGER_CALL *)(int32_t handle, int32_t archive,
                                                             char *record);
using LetturaGenRec32Fn = int16_t(PG_RECORD_MANAGER_CALL *)(int32_t handle, int32_t archive,
                                                            int32_t key, char *record);
using RiscritturaRec32Fn = int16_t(PG_RECORD_MANAGER_CALL *)(int32_t handle, int32_t archive,
                                                             char *record);
using TqGetErcodeFn = int32_t(PG_RECORD_MANAGER_CALL *)();
using VBInitFn = int32_t(PG_RECORD_MANAGER_CALL *)(int32_t handle);
using VBEndFn = void(PG_RECORD_MANAGER_CALL *)(int32_t handle);

} // namespace pg::archives::abi
