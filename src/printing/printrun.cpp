#include "printrun.h"

#include "distintamergedata.h"
#include "printarchivereader.h"
#include "printdocument.h"
#include "printoutput.h"
#include "templatemerge.h"

#include "core/prompter.h"
#include "core/vbdate.h"
#include "distinta/distintestore.h"
#include "lists/usersettings.h"
#include "startup/errortrap.h"

namespace pg::printing {

const QString PrintRun::NotSaved = QStringLiteral("Distinta non ancora salvata");

PrintRun::PrintRun(distinta::DistinteStore &store, archives::ErpSession *erp,
                   const archives::CompanyData &company)
    : m_store(&store), m_erp(erp), m_company(&company)
{
    m_after = [this](distinta::Distinta &d) { m_store->AggiornaFlagStato(d, QStringLiteral("D")); };
}

bool PrintRun::LanciaStampa(distinta::Distinta &d, const PrintOptions &options, PrintOutput &output)
{
    bool printed = false;
    underTrap(QStringLiteral("frmMain!Sub LanciaStampa()"), [&] {
        if (!d.hasHeader())
            return;
        if (d.hasChanges()) {
            msgBox(NotSaved, Buttons::Ok, Icon::Exclamation);
            return;
        }
        printed = AvviaWord(d.header().cod_distinta, options, output);
        if (printed && options.definitive)
            m_after(d);
    });
    return printed;
}

bool PrintRun::AvviaWord(const QString &code, const PrintOptions &options, PrintOutput &output)
{
    m_lastHtml.clear();
    distinta::Distinta saved;
    m_store->Leggi(saved, code);
    if (!saved.hasHeader()) {
        msgBox(NotSaved, Buttons::Ok, Icon::Exclamation);
        return false;
    }

    const QString name =
        options.templateName.isEmpty() ? TemplateStore::defaultName() : options.templateName;
    const std::optional<QString> text = m_templates.text(name);
    if (!text) {
        msgBox(
            QStringLiteral("Modello \"%1\" non trovato in %2").arg(name, m_templates.directory()),
            Buttons::Ok, Icon::Exclamation);
        return false;
    }
    const TemplateMerge merge(*text);
    if (!merge.isValid()) {
        msgBox(QStringLiteral("Il modello \"%1\" (%2) contiene errori e non può essere "
                              "stampato:\r\n")
                       .arg(name, m_templates.origin(name)) +
                   merge.problems().join(QStringLiteral("\r\n")),
               Buttons::Ok, Icon::Exclamation);
        return false;
    }

    PrintArchiveReader archives(m_erp);
    const MergeData data =
        distintaMergeData(saved, *m_company, archives, options, currentSettings().desAlt);
    m_lastHtml = merge.merge(data);

    const QString number = saved.header().cod_distinta.trimmed();
    QString footer = QStringLiteral("Distinta N. %1").arg(number);
    if (saved.header().dat_data_creazione.isValid())
        footer += QStringLiteral(" del ") + dates::toDmy(saved.header().dat_data_creazione);
    PrintDocument document(m_lastHtml, footer, !options.definitive);
    // A row of plain cells is drawn straight, row after row.
    if (std::optional<RowsBand::Content> rows = RowsBand::contentOf(merge, data))
        document.setRows(std::move(*rows));
    document.setProgress(m_progress);
    return output.deliver(document, QStringLiteral("Distinta_%1").arg(number));
}

} // namespace pg::printing
