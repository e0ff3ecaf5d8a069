#pragma once

#include "printdocument.h"
#include "printoptions.h"
#include "templatestore.h"

#include <QString>

#include <functional>

namespace pg::archives {
class ErpSession;
struct CompanyData;
} // namespace pg::archives
namespace pg::distinta {
class DistinteStore;
struct Distinta;
} // namespace pg::distinta

namespace pg::printing {

class PrintOutput;

// The print of a distinta: the saved distinta merged into the chosen template and sent to
// its output (AvviaWord); for a final print that went out, the distinta then becomes "D"
// (AggiornaFlagStato), and a test print leaves its state as it was.
class PrintRun
{
public:
    static const QString NotSaved; // "Distinta non ancora salvata"

    PrintRun(distinta::DistinteStore &store, archives::ErpSession *erp,
             const archives::CompanyData &company);

    void setTemplateStore(const TemplateStore &templates) { m_templates = templates; }
    // What follows a final print: by default the distinta becomes "D" through the store; the
    // main window puts its own AggiornaFlagStato here, which also applies "YYNNYY".
    void setAggiornaFlagStato(std::function<void(distinta::Distinta &)> after)
    {
        m_after = std::move(after);
    }
    // Told page by page while the document is painted; false stops the print (long prints
    // show it with a button that stops them).
    void setProgress(PrintDocument::Progress progress) { m_progress = std::move(progress); }

    // LanciaStampa: prints the distinta (which must be saved, without pending changes) and,
    // when options.definitive and the document went out, runs AggiornaFlagStato. True when
    // the document went out. Failures are reported under "frmMain!Sub LanciaStampa()".
    bool LanciaStampa(distinta::Distinta &distinta, const PrintOptions &options,
                      PrintOutput &output);

    // AvviaWord: the distinta of that code, as saved, merged into the template of the
    // options and sent to the output; false (after its message) when the distinta or the
    // template cannot be printed or nothing went out.
    bool AvviaWord(const QString &code, const PrintOptions &options, PrintOutput &output);

    // The merged HTML of the last AvviaWord (for the command line and the tests).
    const QString &lastHtml() const { return m_lastHtml; }

private:
    distinta::DistinteStore *m_store;
    archives::ErpSession *m_erp;
    const archives::CompanyData *m_company;
    TemplateStore m_templates;
    std::function<void(distinta::Distinta &)> m_after;
    PrintDocument::Progress m_progress;
    QString m_lastHtml;
};

} // namespace pg::printing
