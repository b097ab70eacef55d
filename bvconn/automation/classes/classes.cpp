#include "bvconn/automation/classes/declared_classes.h"

namespace bvconn::automation {

const std::vector<const ClassInfo*>& classes() {
  static const std::vector<const ClassInfo*> all{
      &connector_object_class(),             //
      &generic_connector_class(),            //
      &services_class(),                     //
      &methods_class(),                      //
      &project_connector_class(),            //
      &quote_connector_class(),              //
      &order_connector_class(),              //
      &request_for_quote_connector_class(),  //
      &sales_instrument_connector_class(),   //
      &acknowledgement_connector_class(),    //
      &submittal_connector_class(),          //
      &rma_connector_class(),                //
      &search_connector_class(),
      &invoice_connector_class(),      //
      &maintenance_connector_class(),  //
      &print_connector_class(),        //
      &heart_beat_connector_class(),   //
      &summary_connector_class(),      //
      &postal_connector_class(),       //
      &export_connector_class(),       //
      &document_connector_class(),     //
      &config_connector_class(),       //
  };
  return all;
}

}  // namespace bvconn::automation
