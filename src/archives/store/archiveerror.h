#pragma once

namespace pg::archives {

// Error codes of the record manager, as TqGetErcode returns them after each call.
enum ArchiveError : int {
    Ok = 0,
    NotFound = 1,        // no record with that key
    EndOfArchive = 2,    // a next-read past the last record
    NotOpen = 3,         // the archive was not opened by this session
    OpenedReadOnly = 4,  // a rewrite on an archive not opened for rewriting
    Locked = 5,          // the store is held by another program
    Damaged = 6,         // the store is not a readable archive
    UnknownArchive = 7,  // no layout for that archive number
    AlreadyOpen = 8,     // opened twice by the same session
    NoCurrentRecord = 9, // a rewrite or next-read without a read before it
    BadKey = 10,         // unknown key number, or a start key longer than the key
    BadRecord = 11,      // a record buffer shorter than the archive's records
    IoError = 12,        // the store could not be read or written
    NotInitialised = 13, // a call before VBInit
};

} // namespace pg::archives
