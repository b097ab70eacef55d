#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/declared_classes.h"
#include "bvconn/dal/bv_connector_object.h"

namespace bvconn::automation {

const ClassInfo& connector_object_class() {
  using C = BVConnectorObject;
  static const ClassInfo info =
      ClassBuilder<C>("BVConnectorObject")
          .predeclared()
          .BVCONN_READ_ONLY(HTTPTransportObject)
          .BVCONN_PROPERTY(bool, UsingTorvexDAL)
          .BVCONN_PROPERTY(bool, AllowDisabledDALMethods)
          .BVCONN_PROPERTY(bool, UseDALSave)
          .BVCONN_PROPERTY_WITH(SendDALMessageToLog, "evalMethod", "evalMessage")
          .BVCONN_PROPERTY_WITH(IsDALDisabled, "evalMethod", "evalService")
          .BVCONN_PROPERTY(std::string, GetDisabledDALServices)
          .BVCONN_PROPERTY(std::string, DALUrl)
          .BVCONN_WRITE_ONLY(UserName)
          .BVCONN_WRITE_ONLY(Password)
          .BVCONN_WRITE_ONLY(AppVer)
          .BVCONN_WRITE_ONLY(SalesOrg)
#define BVCONN_SERVICE_OBJECT(name, ...) .BVCONN_READ_ONLY(name)
#include "bvconn/platform/torvexlib/service_object_rows.inc"
          .BVCONN_OPERATION(InitTorvexDAL, "dal_server_url")
          .BVCONN_OPERATION(UseTorvexDAL)
          .take();
  return info;
}

}  // namespace bvconn::automation
