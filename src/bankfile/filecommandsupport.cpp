#include "filecommandsupport.h"

#include "core/filewriteerror.h"
#include "core/prompter.h"
#include "distinta/distintestore.h"
#include "startup/companyenvironment.h"

#include <QDir>
#include <QRegularExpression>
#include <QSaveFile>

namespace pg::bankfile {

QString stmFilePath(const QString &prefix, const QString &codDistinta, const QString &extension)
{
    return OrvidaDir() + QStringLiteral("D_STM") + stmFileTag(prefix, codDistinta, extension);
}

QString stmFileTag(const QString &prefix, const QString &codDistinta, const QString &extension)
{
    return u'/' + prefix + codDistinta.trimmed() + extension;
}

AppError pathError(const QString &path, const QString &reason)
{
    return AppError(AppError::PathFileAccess, pathFileAccessText(path, reason));
}

bool writeWholeFile(const QString &path, const std::function<bool(QIODevice &)> &write)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw pathError(path, file.errorString());
    if (!write(file))
        return false;
    // A write that failed on the way makes the commit fail too; a full disk is said so.
    if (!file.commit())
        throw pathError(path, fileWriteProblem(file, file.size()));
    return true;
}

bool markDueItems(distinta::DistinteStore &store, const distinta::Testata &header,
                  const distinta::RecordSet<distinta::Riga> &rows)
{
    QList<distinta::Riga> list;
    list.reserve(rows.size());
    for (int k = 0; k < rows.size(); ++k)
        list << rows.at(k);
    return store.AggiornaScadenze(header, list, QStringLiteral("cmdCreaFile"));
}

bool writeMarkedDocument(const QString &path, distinta::DistinteStore &store,
                         const distinta::Testata &header,
                         const distinta::RecordSet<distinta::Riga> *rows,
                         const QByteArray &document)
{
    return writeWholeFile(path, [&](QIODevice &file) {
        if (rows && !markDueItems(store, header, *rows))
            return false;
        file.write(document);
        return true;
    });
}

void markPresented(distinta::DistinteStore &store, distinta::Distinta &d, const QString &path)
{
    store.AggiornaFlagStato(d, QStringLiteral("F"));
    msgBox(completedMessage(path));
}

QString completedMessage(const QString &path)
{
    return QStringLiteral("Elaborazione Completata") + QStringLiteral("\r\n") +
           QStringLiteral("File scritto in: ") + QDir::toNativeSeparators(path);
}

QString listedProblems(const QString &introduction, const QStringList &problems)
{
    QString text = introduction;
    for (int i = 0; i < problems.size() && i < MaxListedProblems; ++i)
        text += QStringLiteral("\r\n- ") + problems.at(i);
    if (problems.size() > MaxListedProblems)
        text += QStringLiteral("\r\n... e altre %1 segnalazioni.")
                    .arg(problems.size() - MaxListedProblems);
    return text;
}

bool isEuro(const QString &currency)
{
    const QString code = currency.trimmed();
    return code.isEmpty() || code.compare(QStringLiteral("EU"), Qt::CaseInsensitive) == 0;
}

bool isFiveDigits(const QString &text)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]{5}$"));
    return digits.match(text).hasMatch();
}

} // namespace pg::bankfile
