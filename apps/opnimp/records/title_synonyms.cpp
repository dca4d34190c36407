#include "apps/opnimp/records/title_synonyms.h"

#include <array>

namespace velk {

namespace {

constexpr std::string_view customerCode = "Customer ID";
constexpr std::string_view customerName = "Customer Name";
constexpr std::string_view vendorCode = "Vendor ID,Vendor Code";
constexpr std::string_view vendorName = "Vendor Name";

constexpr std::array synonymTable{std::to_array<Synonyms>({
    {customerCode, "English",
     "Customer Code,Customer Number,Customer,Client ID,Client Code,Party Code,Party ID,Account "
     "Code,Account Number,Debtor Code,Debtor ID,Retailer Code,Code"},
    {customerCode, "German",
     "Kundennummer,Kunden Nr,Kundencode,Debitor,Debitorennummer,Kontonummer"},
    {customerCode, "French",
     "Code client,Numéro client,N° client,Identifiant client,Compte client"},
    {customerCode, "Spanish", "Código de cliente,Código cliente,ID cliente,Número de cliente"},
    {customerCode, "Portuguese", "Código do cliente,ID do cliente,Número do cliente"},
    {customerCode, "Italian", "Codice cliente,ID cliente,Numero cliente"},
    {customerCode, "Dutch", "Klantnummer,Klantcode,Debiteurnummer"},
    {customerName, "English", "Client Name,Party Name,Account Name,Debtor Name,Company Name,Name"},
    {customerName, "German", "Kundenname,Firma,Kunde"},
    {customerName, "French", "Nom client,Nom du client,Raison sociale"},
    {customerName, "Spanish", "Nombre,Nombre del cliente,Razón social"},
    {customerName, "Portuguese", "Nome do cliente,Razão social"},
    {customerName, "Italian", "Nome cliente,Ragione sociale"},
    {customerName, "Dutch", "Klantnaam,Bedrijfsnaam"},
    {vendorCode, "English",
     "Vendor Number,Vendor,Supplier ID,Supplier Code,Supplier Number,Creditor Code,Creditor "
     "ID,Party Code,Party ID,Account Code,Account Number,Code"},
    {vendorCode, "German",
     "Lieferantennummer,Lieferanten Nr,Kreditor,Kreditorennummer,Kontonummer"},
    {vendorCode, "French", "Code fournisseur,Numéro fournisseur,N° fournisseur,Compte fournisseur"},
    {vendorCode, "Spanish",
     "Código de proveedor,Código proveedor,ID proveedor,Número de proveedor"},
    {vendorCode, "Portuguese", "Código do fornecedor,ID do fornecedor"},
    {vendorCode, "Italian", "Codice fornitore,ID fornitore"},
    {vendorCode, "Dutch", "Leveranciersnummer,Leverancierscode,Crediteurnummer"},
    {vendorName, "English", "Supplier Name,Creditor Name,Party Name,Account Name,Name"},
    {vendorName, "German", "Lieferantenname,Lieferant,Firma"},
    {vendorName, "French", "Nom fournisseur,Nom du fournisseur,Raison sociale"},
    {vendorName, "Spanish", "Nombre,Nombre del proveedor,Razón social"},
    {vendorName, "Portuguese", "Nome do fornecedor,Razão social"},
    {vendorName, "Italian", "Nome fornitore,Ragione sociale"},
    {vendorName, "Dutch", "Leveranciersnaam,Bedrijfsnaam"},
    {"Reference", "English",
     "Reference Number,Ref,Ref No,Bill No,Bill Number,Invoice,Invoice No,Invoice Number,Document "
     "No,Document Number,Document,Doc,Doc Ref,Inv,Voucher,Voucher No,Voucher "
     "Number,Vch,Transaction "
     "ID,Trans ID,Transaction No,Transaction Number,Txn,Txn ID"},
    {"Reference", "German", "Referenz,Beleg,Belegnummer,Beleg Nr,Rechnungsnummer,Rechnungs Nr"},
    {"Reference", "French", "Référence,Pièce,Numéro de facture,N° facture,N° de pièce"},
    {"Reference", "Spanish", "Referencia,Número de factura,N° factura,Documento"},
    {"Reference", "Portuguese", "Referência,Número da fatura,Documento"},
    {"Reference", "Italian", "Riferimento,Numero fattura,Documento"},
    {"Reference", "Dutch", "Referentie,Factuurnummer,Boekstuknummer"},
    {"Date", "English",
     "Dt,Dated,Document Date,Bill Date,Invoice Date,Voucher Date,Posting Date,Transaction Date"},
    {"Date", "German", "Datum,Belegdatum,Rechnungsdatum,Buchungsdatum"},
    {"Date", "French", "Date de facture,Date facture,Date pièce"},
    {"Date", "Spanish", "Fecha,Fecha de factura,Fecha factura"},
    {"Date", "Portuguese", "Data,Data da fatura"},
    {"Date", "Italian", "Data,Data fattura"},
    {"Date", "Dutch", "Datum,Factuurdatum"},
    {"Bill Amount", "English",
     "Amount,Invoice Amount,Document Amount,Original Amount,Bill Value,Invoice Value,Total,Total "
     "Amount"},
    {"Bill Amount", "German", "Betrag,Rechnungsbetrag,Belegbetrag,Bruttobetrag"},
    {"Bill Amount", "French", "Montant,Montant facture,Montant de la facture,Montant TTC"},
    {"Bill Amount", "Spanish", "Importe,Monto,Importe de factura,Importe factura"},
    {"Bill Amount", "Portuguese", "Valor,Valor da fatura,Montante"},
    {"Bill Amount", "Italian", "Importo,Importo fattura"},
    {"Bill Amount", "Dutch", "Bedrag,Factuurbedrag"},
    {"Balance", "English",
     "Balance Due,Balance Amount,Outstanding,Outstanding Amount,Amount Due,Open Amount,Due "
     "Amount,Pending Amount,Opening Balance"},
    {"Balance", "German", "Saldo,Offen,Offener Betrag,Restbetrag"},
    {"Balance", "French", "Solde,Reste dû,Solde dû,Montant dû"},
    {"Balance", "Spanish", "Saldo,Saldo pendiente,Pendiente"},
    {"Balance", "Portuguese", "Saldo,Saldo em aberto,Em aberto"},
    {"Balance", "Italian", "Saldo,Residuo,Importo residuo"},
    {"Balance", "Dutch", "Saldo,Openstaand,Openstaand bedrag"},
    {"Bank Code", "English", "Bank ID,Bank Number,Bank"},
    {"Bank Code", "German", "Bankleitzahl,BLZ,Banknummer"},
    {"Bank Code", "French", "Code banque"},
    {"Bank Code", "Spanish", "Código de banco,Código banco"},
    {"Bank Code", "Portuguese", "Código do banco"},
    {"Bank Code", "Italian", "Codice banca"},
    {"Bank Name", "English", "Name of Bank"},
    {"Bank Name", "German", "Bankname"},
    {"Bank Name", "French", "Nom de la banque,Banque"},
    {"Bank Name", "Spanish", "Nombre del banco,Banco"},
    {"Bank Name", "Portuguese", "Nome do banco"},
    {"Bank Name", "Italian", "Nome banca,Banca"},
    {"Branch Code", "English", "Branch ID,Branch Number,Branch No"},
    {"Branch Code", "German", "Filialnummer,Filialcode"},
    {"Branch Code", "French", "Code agence,Code guichet"},
    {"Branch Code", "Spanish", "Código de sucursal,Código sucursal"},
    {"Branch Code", "Portuguese", "Código da agência"},
    {"Branch Code", "Italian", "Codice filiale"},
    {"Branch Name", "English", "Name of Branch,Branch"},
    {"Branch Name", "German", "Filialname,Filiale"},
    {"Branch Name", "French", "Nom de l'agence,Agence"},
    {"Branch Name", "Spanish", "Nombre de sucursal,Sucursal"},
    {"Branch Name", "Portuguese", "Nome da agência,Agência"},
    {"Branch Name", "Italian", "Nome filiale"},
    {"Address", "English", "Street,Street Address,Postal Address"},
    {"Address", "German", "Adresse,Anschrift,Straße"},
    {"Address", "French", "Adresse"},
    {"Address", "Spanish", "Dirección"},
    {"Address", "Portuguese", "Endereço,Morada"},
    {"Address", "Italian", "Indirizzo"},
    {"Phone", "English", "Telephone,Phone Number,Phone No,Mobile,Tel"},
    {"Phone", "German", "Telefon,Telefonnummer"},
    {"Phone", "French", "Téléphone"},
    {"Phone", "Spanish", "Teléfono"},
    {"Phone", "Portuguese", "Telefone"},
    {"Phone", "Italian", "Telefono"},
    {"Contact Person", "English", "Contact,Contact Name"},
    {"Contact Person", "German", "Ansprechpartner,Kontakt"},
    {"Contact Person", "French", "Contact,Interlocuteur"},
    {"Contact Person", "Spanish", "Contacto,Persona de contacto"},
    {"Contact Person", "Portuguese", "Contato,Contacto"},
    {"Contact Person", "Italian", "Contatto,Referente"},
    {"Locality", "English", "Local or Outstation,Area"},
    {"Sale Type", "English", "Type of Sale,Sales Type"},
    {"TNGST", "English", "TNGST No,TNGST Number,GST No"},
    {"CST", "English", "CST No,CST Number"},
    {"Pan Number", "English", "PAN,PAN No"},
})};

}  // namespace

std::span<const Synonyms> synonyms() {
  return synonymTable;
}

}  // namespace velk
