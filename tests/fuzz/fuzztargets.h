#pragma once

#include <QByteArrayView>
#include <QList>

// The parsers that read what others wrote, each as one function of an input: the fuzz
// targets of script/fuzz (libFuzzer, with the address and undefined-behaviour sanitizers) and
// the inputs kept in tests/fuzz/corpus/, replayed by an ordinary test. None may crash, hang or
// read or write out of bounds, whatever the input.
namespace pg::fuzz {

// The archives' text format: every line of the input as a record line, and each record read
// written back as a line and read again.
void archiveText(QByteArrayView input);
// An ini file of the suite, read and looked up as the program does.
void iniFile(QByteArrayView input);
// The schema description file ("QXARTRAC.DAT"), and the description written again.
void schemaFile(QByteArrayView input);
// An archive store's file: every archive opened, walked by every key and each record's
// fields decoded and checked; a record rewritten on the way.
void storeRecords(QByteArrayView input);

struct Target
{
    const char *name; // also the folder of its inputs in tests/fuzz/corpus/
    void (*run)(QByteArrayView input);
};
const QList<Target> &targets();

} // namespace pg::fuzz
