#pragma once

#include <QString>

namespace pg {

// Where the suite and the current company live. Filled once at start-up from the suite's
// own ini files and never changed afterwards; every directory ends in a separator.
struct CompanyEnvironment
{
    QString OrvidaDir;         // the suite's installation directory
    QString CompanyCode;       // the suite's current company, as read
    QString CompanyArchiveDir; // the company's archives; the local database lives here
    QString CommonArchiveDir;  // the archives shared by all companies
    QString ProgramDir;        // OrvidaDir + "exe/"
};

const CompanyEnvironment &companyEnvironment();
void setCompanyEnvironment(const CompanyEnvironment &environment);

inline const QString &OrvidaDir() { return companyEnvironment().OrvidaDir; }
inline const QString &CompanyCode() { return companyEnvironment().CompanyCode; }
inline const QString &CompanyArchiveDir() { return companyEnvironment().CompanyArchiveDir; }
inline const QString &CommonArchiveDir() { return companyEnvironment().CommonArchiveDir; }
inline const QString &ProgramDir() { return companyEnvironment().ProgramDir; }

// The directory searched for "ORVIDA.INI": the one named by ORVIDA_INI_DIR; when that is
// unset, the Windows directory on Windows and $XDG_CONFIG_HOME/orvida (by default
// ~/.config/orvida) elsewhere.
QString orvidaIniDirectory();
QString orvidaIniPath();

// Reads the suite's ini file and the company's parpe file and returns the four directories
// and the company code (ProgramDir is left to the caller, as start-up sets it next). When the
// company's parpe file does not exist, shows "Errore. Non è stato trovato il Parpe per
// l'azienda attiva " with the code, and on the next line the cause (the suite's ini file
// missing, without its section or a value, a value cut at 39 characters, or the parpe file
// missing), and ends the process.
CompanyEnvironment ResolveCompanyEnvironment();

// The ProgramDir of an installation directory.
QString programDirOf(const QString &orvidaDir);

} // namespace pg
