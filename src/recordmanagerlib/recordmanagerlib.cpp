// The record manager as a shared library: the suite's C functions over the embedded archive
// store, so that the program's library binding is exercised exactly as it is with the
// suite's own library. The archive directories are those of the company environment, read
// from "ORVIDA.INI" and the company's parpe file as the program reads them: at the first
// VBInit (or at the first call, when VBInit comes from another library), and again after
// the last session has ended with VBEnd.
//
// Like the suite's library it keeps one state for the process and serves one thread.

#include "archives/store/archiveerror.h"
#include "archives/store/embeddedarchivestore.h"
#include "archives/store/recordlayout.h"
#include "archives/store/recordmanagerabi.h"

#include "core/prompter.h"
#include "startup/companyenvironment.h"

#include <QByteArray>
#include <QString>

#include <cstring>
#include <memory>
#include <set>
#include <type_traits>

#if defined(_WIN32)
#define PG_RECORD_MANAGER_EXPORT __declspec(dllexport)
#else
#define PG_RECORD_MANAGER_EXPORT __attribute__((visibility("default")))
#endif

using namespace pg;
using namespace pg::archives;

namespace {

// Takes the messages of the environment's resolution instead of showing them, and turns
// its end of the process into a failure of the initialisation: a library never ends the
// program that loaded it.
class SilentPrompter : public Prompter
{
public:
    Answer ask(const Message &message) override
    {
        m_text = message.text;
        return Answer::Ok;
    }
    [[noreturn]] void endProcess(int exitCode) override { throw ProcessEnded{exitCode}; }
    const QString &text() const { return m_text; }

private:
    QString m_text;
};

struct LibraryState
{
    std::unique_ptr<EmbeddedArchiveStore> store;
    std::set<int32_t> sessions;
    int32_t lastError = Ok;
    QByteArray buffer; // the record passed to the store, reused call after call
};

LibraryState &state()
{
    static LibraryState s;
    return s;
}

// The store of the company environment, opened when there is none yet; null when the
// environment cannot be resolved.
EmbeddedArchiveStore *store()
{
    LibraryState &s = state();
    if (s.store)
        return s.store.get();
    SilentPrompter silent;
    PrompterScope scope(silent);
    try {
        const CompanyEnvironment env = ResolveCompanyEnvironment();
        s.store =
            std::make_unique<EmbeddedArchiveStore>(env.CompanyArchiveDir, env.CommonArchiveDir);
    } catch (const ProcessEnded &) {
        return nullptr;
    }
    return s.store.get();
}

int16_t notInitialised()
{
    state().lastError = NotInitialised;
    return int16_t(-NotInitialised);
}

int16_t finish(EmbeddedArchiveStore *s, int16_t status)
{
    state().lastError = s->TqGetErcode();
    return status;
}

// The record length of the archive, 0 when the layouts do not know it (the store then
// reports the unknown archive).
int recordLength(int32_t archive)
{
    const ArchiveLayout *layout = RecordLayouts::instance().archive(archive);
    return layout ? layout->length : 0;
}

QByteArray &bufferFrom(const char *record, int length)
{
    QByteArray &buffer = state().buffer;
    buffer.resize(length);
    if (length > 0)
        std::memcpy(buffer.data(), record, size_t(length));
    return buffer;
}

void copyBack(const QByteArray &buffer, char *record, int length)
{
    if (buffer.size() >= length && length > 0)
        std::memcpy(record, buffer.constData(), size_t(length));
}

} // namespace

extern "C" {

PG_RECORD_MANAGER_EXPORT int32_t PG_RECORD_MANAGER_CALL VBInit(int32_t handle)
{
    LibraryState &s = state();
    // The first session reads the environment afresh.
    if (s.sessions.empty())
        s.store.reset();
    if (!store()) {
        s.lastError = NotInitialised;
        return 0;
    }
    s.sessions.insert(handle);
    s.lastError = Ok;
    return 1;
}

PG_RECORD_MANAGER_EXPORT void PG_RECORD_MANAGER_CALL VBEnd(int32_t handle)
{
    LibraryState &s = state();
    if (s.store)
        s.store->VBEnd(handle);
    s.sessions.erase(handle);
    if (s.sessions.empty())
        s.store.reset();
}

PG_RECORD_MANAGER_EXPORT int16_t PG_RECORD_MANAGER_CALL AperturaFile(int32_t handle,
                                                                     int32_t archive, int32_t mode)
{
    EmbeddedArchiveStore *s = store();
    if (!s)
        return notInitialised();
    return finish(s, s->AperturaFile(handle, archive, mode));
}

PG_RECORD_MANAGER_EXPORT int16_t PG_RECORD_MANAGER_CALL ChiusuraFile(int32_t handle,
                                                                     int32_t archive)
{
    EmbeddedArchiveStore *s = store();
    if (!s)
        return notInitialised();
    return finish(s, s->ChiusuraFile(handle, archive));
}

PG_RECORD_MANAGER_EXPORT int16_t PG_RECORD_MANAGER_CALL LetturaEqRec32(int32_t handle,
                                                                       int32_t archive, int32_t key,
                                                                       char *record)
{
    EmbeddedArchiveStore *s = store();
    if (!s)
        return notInitialised();
    if (!record) {
        state().lastError = BadRecord;
        return int16_t(-BadRecord);
    }
    const int length = recordLength(archive);
    QByteArray &buffer = bufferFrom(record, length);
    const int16_t status = finish(s, s->LetturaEqRec32(handle, archive, key, buffer));
    if (state().lastError == Ok)
        copyBack(buffer, record, length);
    return status;
}

PG_RECORD_MANAGER_EXPORT int16_t PG_RECORD_MANAGER_CALL LetturaFirstRec32(int32_t handle,
                                                                          int32_t archive,
                                                                          int32_t key, char *record,
                                                                          const char *startKey)
{
    EmbeddedArchiveStore *s = store();
    if (!s)
        return notInitialised();
    if (!record) {
        state().lastError = BadRecord;
        return int16_t(-BadRecord);
    }
    const int length = recordLength(archive);
    QByteArray &buffer = state().buffer;
    const QByteArray start = startKey ? QByteArray(startKey) : QByteArray();
    const int16_t status = finish(s, s->LetturaFirstRec32(handle, archive, key, buffer, start));
    if (state().lastError == Ok)
        copyBack(buffer, record, length);
    return status;
}

PG_RECORD_MANAGER_EXPORT int16_t PG_RECORD_MANAGER_CALL LetturaNextRec32(int32_t handle,
                                                                         int32_t archive,
                                                                         char *record)
{
    EmbeddedArchiveStore *s = store();
    if (!s)
        return notInitialised();
    if (!record) {
        state().lastError = BadRecord;
        return int16_t(-BadRecord);
    }
    QByteArray &buffer = state().buffer;
    const int16_t status = finish(s, s->LetturaNextRec32(handle, archive, buffer));
    if (state().lastError == Ok)
        copyBack(buffer, record, recordLength(archive));
    return status;
}

PG_RECORD_MANAGER_EXPORT int16_t PG_RECORD_MANAGER_CALL LetturaGenRec32(int32_t handle,
                                                                        int32_t archive,
                                                                        int32_t key, char *record)
{
    EmbeddedArchiveStore *s = store();
    if (!s)
        return notInitialised();
    if (!record) {
        state().lastError = BadRecord;
        return int16_t(-BadRecord);
    }
    const int length = recordLength(archive);
    QByteArray &buffer = bufferFrom(record, length);
    const int16_t status = finish(s, s->LetturaGenRec32(handle, archive, key, buffer));
    if (state().lastError == Ok)
        copyBack(buffer, record, length);
    return status;
}

PG_RECORD_MANAGER_EXPORT int16_t PG_RECORD_MANAGER_CALL RiscritturaRec32(int32_t handle,
                                                                         int32_t archive,
                                                                         char *record)
{
    EmbeddedArchiveStore *s = store();
    if (!s)
        return notInitialised();
    if (!record) {
        state().lastError = BadRecord;
        return int16_t(-BadRecord);
    }
    return finish(s,
                  s->RiscritturaRec32(handle, archive, bufferFrom(record, recordLength(archive))));
}

PG_RECORD_MANAGER_EXPORT int32_t PG_RECORD_MANAGER_CALL TqGetErcode()
{
    return state().lastError;
}

} // extern "C"

// The exported functions are those the binding looks for, with the same signatures.
static_assert(std::is_same_v<decltype(&AperturaFile), abi::AperturaFileFn>);
static_assert(std::is_same_v<decltype(&ChiusuraFile), abi::ChiusuraFileFn>);
static_assert(std::is_same_v<decltype(&LetturaEqRec32), abi::LetturaEqRec32Fn>);
static_assert(std::is_same_v<decltype(&LetturaFirstRec32), abi::LetturaFirstRec32Fn>);
static_assert(std::is_same_v<decltype(&LetturaNextRec32), abi::LetturaNextRec32Fn>);
static_assert(std::is_same_v<decltype(&LetturaGenRec32), abi::LetturaGenRec32Fn>);
static_assert(std::is_same_v<decltype(&RiscritturaRec32), abi::RiscritturaRec32Fn>);
static_assert(std::is_same_v<decltype(&TqGetErcode), abi::TqGetErcodeFn>);
static_assert(std::is_same_v<decltype(&VBInit), abi::VBInitFn>);
static_assert(std::is_same_v<decltype(&VBEnd), abi::VBEndFn>);
