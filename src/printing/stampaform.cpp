#include "stampaform.h"

#include "templatestore.h"

#include "core/prompter.h"
#include "core/vbdate.h"
#include "lists/usersettings.h"

namespace pg::printing {

const QString StampaForm::InvalidDate =
    QStringLiteral("Inserire una data di presentazione valida (gg/mm/aaaa)!");

namespace {

const QString EmptyDate = QString::fromUtf16(dates::EmptyMaskedDate);

// The box's text with a year typed in two digits completed; an empty box stays empty.
QString completed(const QString &text)
{
    if (text == EmptyDate || text.trimmed().isEmpty())
        return EmptyDate;
    return dates::completeTwoDigitYear(text);
}

} // namespace

const QStringList &StampaForm::tipoItems()
{
    static const QStringList items{QStringLiteral("Prova"), QStringLiteral("Definitiva")};
    return items;
}

StampaForm::StampaForm(const editor::PrinterCatalog &printers)
    : m_printers(printers), m_dataInvio(EmptyDate)
{}

void StampaForm::Form_Load(const QString &state, bool chooseTemplate, const QStringList &templates,
                           const UserSettings &settings)
{
    m_wide = false;
    m_tag.clear();
    m_tipo = 0;
    m_tipoEnabled = true;
    // A distinta printed in final form can only be printed again as final.
    if (state == u"D") {
        m_tipo = 1;
        m_tipoEnabled = false;
    }
    m_dataInvio = dates::toDmy(dates::today());
    FillComboModelli(templates, chooseTemplate);
    m_autoPrint = settings.autoPrint != 0;
    m_grouped = settings.raggruppa != 0;
    m_totali = false;
}

void StampaForm::setTipoIndex(int index)
{
    if (m_tipoEnabled && index >= 0 && index < tipoItems().size())
        m_tipo = index;
}

bool StampaForm::DataInvio_KeyPress(QChar key)
{
    if (key != u'd' && key != u'D')
        return false;
    m_dataInvio = dates::toDmy(dates::today());
    return true;
}

void StampaForm::FillComboModelli(const QStringList &templates, bool chooseTemplate)
{
    const QString standard = TemplateStore::defaultName();
    m_modelliEnabled = chooseTemplate;
    if (chooseTemplate)
        m_modelli = templates;
    else
        m_modelli = QStringList{standard};
    m_modello = int(m_modelli.indexOf(standard));
    if (m_modello < 0 && !m_modelli.isEmpty()) {
        // The default template's name is matched without regard to case, as files may be
        // named by hand.
        for (int i = 0; i < m_modelli.size(); ++i)
            if (m_modelli.at(i).compare(standard, Qt::CaseInsensitive) == 0)
                m_modello = i;
        if (m_modello < 0)
            m_modello = 0;
    }
}

void StampaForm::setModelloIndex(int index)
{
    if (m_modelliEnabled && index >= 0 && index < m_modelli.size())
        m_modello = index;
}

void StampaForm::cmdScegli_Click()
{
    if (m_tag != setTag()) {
        m_printers.fill();
        m_selectedPrinter = m_printers.currentIndex();
        m_wide = true;
        m_tag = setTag();
        return;
    }
    m_printers.makeCurrent(m_selectedPrinter);
    closePrinterList();
}

void StampaForm::closePrinterList()
{
    m_wide = false;
    m_tag.clear();
}

PrintOptions StampaForm::options() const
{
    PrintOptions options;
    options.definitive = tipoText().startsWith(u'D');
    options.presentationDate = dates::parseDmy(completed(m_dataInvio));
    options.templateName = m_modelli.value(m_modello);
    options.totals = m_totali;
    options.grouped = m_grouped;
    options.autoPrint = m_autoPrint;
    return options;
}

bool StampaForm::presentationDateValid() const
{
    const QString date = completed(m_dataInvio);
    return date == EmptyDate || dates::isValidDmy(date);
}

bool StampaForm::cmdStampa_Click(const Launcher &lanciaStampa)
{
    if (!presentationDateValid()) {
        msgBox(InvalidDate, Buttons::Ok, Icon::Exclamation);
        return false;
    }
    m_dataInvio = completed(m_dataInvio);
    if (m_tag == setTag())
        m_printers.makeCurrent(m_selectedPrinter);
    const bool printed = lanciaStampa(options());
    closePrinterList();
    return printed;
}

} // namespace pg::printing
