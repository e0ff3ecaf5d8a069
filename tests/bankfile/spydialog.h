#pragma once

#include "bankfile/creafiledialog.h"

#include <QStringList>

#include <optional>

namespace pg::test {

// A bank-file dialog that answers as told: it keeps what it was shown, and may change the
// file name, the references or the format, and give the CBI code when asked for it.
class SpyDialog : public bankfile::CreaFileDialog
{
public:
    QString answer = confirmed();
    QString fileName;
    QString rifMitt;
    std::optional<BankFileFormat> switchTo;
    QString cuc;
    int calls = 0;
    int cucQuestions = 0;
    bool grouped = false;
    bankfile::CreaFileFields shown;
    QStringList *log = nullptr; // "dialog" is added when it opens

    QString exec(bankfile::CreaFileFields &fields, distinta::Distinta &, bool isGrouped) override
    {
        ++calls;
        grouped = isGrouped;
        shown = fields;
        if (log)
            *log << QStringLiteral("dialog");
        if (!fileName.isEmpty())
            fields.fileName = fileName;
        if (!rifMitt.isNull())
            fields.rifMitt = rifMitt;
        if (switchTo)
            fields.switchFormat(*switchTo);
        return answer;
    }
    QString askCuc() override
    {
        ++cucQuestions;
        return cuc;
    }
};

} // namespace pg::test
