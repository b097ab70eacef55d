// The methods whose parameters are what matters. Each gives back a text that says that it was
// called.

#include "notes.h"

using notes::done;
using notes::Json;
using notes::shown;
using notes::text;
using notes::Text;

using Node = soap_dom_element*;

int inv__unlockOrderReconcile(soap* context, Text gid, bool unassociate, Text agent, Text& result) {
  return done(context, __func__, result, gid, unassociate, agent);
}

int inv__searchForInvoices(soap* context, Text invoice, Text order, Text project, Text maker,
                           Text maker_order, Text status, Node customer, Node sold_to, Node account,
                           Node partner, Text agent, Text torvex_order, Text from, Text to,
                           Text period_from, Text period_to, Text& result) {
  return done(context, __func__, result, invoice, order, project, maker, maker_order, status,
              customer, sold_to, account, partner, agent, torvex_order, from, to, period_from,
              period_to);
}

int inv__autoReconcileMultiple(soap* context, Strings* uids, Text agent, Text date, Text& result) {
  return done(context, __func__, result, uids, agent, date);
}

int inv__saveOrderReconcile(soap* context, Reconcile bean, Text& result) {
  return done(context, __func__, result,
              Json({{"UID", shown(bean.UID)}, {"Agent", shown(bean.Agent)}}));
}

int sea__searchForGLCodes(soap* context, Text code, Text description, bool other, Text& result) {
  return done(context, __func__, result, code, description, other);
}

int sea__searchForAllAgents(soap* context, short agent, Text& result) {
  return done(context, __func__, result, agent);
}

int sea__searchApprovalQueue(soap* context, Text agent, Strings* brands, Strings* promotions,
                             Strings* makers, Text shipping, bool b1, bool b2, bool b3, bool b4,
                             bool b5, bool b6, bool b7, bool b8, bool b9, bool b10, bool b11,
                             bool b12, bool b13, bool b14, bool b15, bool b16, bool b17, bool b18,
                             bool b19, Strings* industries, bool quick, Text& result) {
  return done(context, __func__, result, agent, brands, promotions, makers, shipping, b1, b2, b3,
              b4, b5, b6, b7, b8, b9, b10, b11, b12, b13, b14, b15, b16, b17, b18, b19, industries,
              quick);
}

int mnt__orderParagraphs(soap* context, Strings* uids, Text& result) {
  return done(context, __func__, result, uids);
}

int mnt__orderRemarks(soap* context, Node uids, Text& result) {
  return done(context, __func__, result, uids);
}

int mnt__getAllParagraphs(soap* context, Text& result) {
  return done(context, __func__, result);
}

int mnt__getUserQuotePrintoutDefault(soap* context, Text& result) {
  return done(context, __func__, result);
}

int mnt__updateUserProfile(soap* context, Text name, Text city, Text& result) {
  return done(context, __func__, result, name, city);
}

int sum__getUserSummary(soap* context, short projects, short quotes, short orders, Text& result) {
  return done(context, __func__, result, projects, quotes, orders);
}

int sum__noteVisit(soap* context, Visit visit, Text& result) {
  return done(context, __func__, result,
              Json({{"Who", shown(visit.Who)}, {"When", shown(visit.When)}}));
}

int sum__noteLists(soap* context, NumberLists lists, Text& result) {
  Json numbers = Json::array();
  for (int i = 0; i < lists.Numbers.__size; ++i) numbers.push_back(shown(lists.Numbers.__ptr[i]));
  return done(context, __func__, result, Json({{"Numbers", numbers}}));
}

int ord__newAcknowledgement(soap* context, Node document, Text& result) {
  done(context, __func__, result, document);
  result = text(context, "http://documents.example/new.pdf?a=1&b=2");
  return SOAP_OK;
}

int ord__updateLineItemComments(soap* context, Node document, Text& result) {
  return done(context, __func__, result, document);
}

int ord__updateCommSalesPeople(soap* context, People people, Text gid, Text& result) {
  return done(context, __func__, result,
              Json({{"Name", shown(people.Name)}, {"Share", shown(people.Share)}}), gid);
}

int quo__updateRFQ(soap* context, Text rfq, Text quote, Text& result) {
  return done(context, __func__, result, rfq, quote);
}

int quo__updateLineItemComments(soap* context, Node document, Text& result) {
  return done(context, __func__, result, document);
}

int quo__updateHeaderComments(soap* context, Comments comments, Text& result) {
  return done(context, __func__, result,
              Json({{"Type", shown(comments.com__Type)}, {"Text", shown(comments.com__Text)}}));
}

int prj__save(soap* context, Project project, Text& result) {
  return done(context, __func__, result,
              Json({{"Name", shown(project.Name)}, {"City", shown(project.City)}}));
}

int prj__generateQuotes(soap* context, Text project, Container container, Text& result) {
  return done(context, __func__, result, project,
              Json({{"Kind", shown(container.Kind)}, {"Mfr", shown(container.Mfr)}}));
}

int prd__getProductCost(soap* context, Text agent, Text customer, Text account, LineItem item,
                        Text& result) {
  return done(context, __func__, result, agent, customer, account,
              Json({{"GID", shown(item.GID)}, {"Qty", shown(item.Qty)}}));
}

int sub__createSubmittal(soap* context, Sheet* sheet, Text& result) {
  if (sheet == nullptr) return done(context, __func__, result, Text());
  Json lines = Json::array();
  for (int i = 0; i < sheet->__sizeLine; ++i) {
    const Line& line = sheet->Line[i];
    lines.push_back(Json({{"Nr", shown(line.Nr)}, {"Note", shown(line.Note)}}));
  }
  return done(context, __func__, result,
              Json({{"UID", shown(sheet->UID)}, {"Text", shown(sheet->Text)}, {"Line", lines}}));
}

int rma__saveRMA(soap* context, RMA rma, Saved& result) {
  done(context, __func__, result.UID,
       Json({{"Reason", shown(rma.Reason)},
             {"Count", shown(rma.Count)},
             {"Share", shown(rma.Share)},
             {"Open", shown(rma.Open)},
             {"Note", shown(rma.Note)}}));
  result.UID = text(context, "U-7");
  return SOAP_OK;
}

int rma__searchRMA(soap* context, Text reference, Text number, Text distributor, Text date,
                   Text& result) {
  return done(context, __func__, result, reference, number, distributor, date);
}

int rma__getRMA(soap* context, Text uid, Text& result) {
  return done(context, __func__, result, uid);
}

int sal__pilferSalesInstrument(soap* context, Text gid, Text& result) {
  return done(context, __func__, result, gid);
}

int ivq__getInventoryInfo(soap* context, Node document, Text& result) {
  return done(context, __func__, result, document);
}

int pos__getCountries(soap* context, bool lazy, Text& result) {
  return done(context, __func__, result, lazy);
}

int cfg__GetConfigXML(soap* context, Strings* guids, Text& result) {
  return done(context, __func__, result, guids);
}

int trv__getDocuments(soap* context, Text gid, Text& result) {
  return done(context, __func__, result, gid);
}

int getDefaultColumnValues(soap* context, Text gid, Text& result) {
  return done(context, __func__, result, gid);
}
