#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "bvconn/component/counted.h"
#include "bvconn/component/handles.h"
#include "bvconn/component/memory.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"

/// Objects that are not the library's, as an application or a script passes them in: what they are
/// is asked by name. Their results are freed by the library, like its own.
namespace bvconn::component {

/// How a value that such an object gives becomes one of the library's; throws for what does not.
using ReadVariant = std::function<Variant(const VariantRecord&)>;

/// An object with `Name`, `Value` and `Nodes` (with `Count` and `Item`) as a node of ours, a copy
/// with copies of its children, but for those that are nodes of ours; nothing for any other object.
/// `Value` is asked only where there are no children, `Namespace` where there is one.
///
/// Throws `Error` 13 for one of which a part does not answer, or that never ends.
std::optional<SoapNode> foreign_node(IUnknownAbi* object, const ReadVariant& read);

/// The items of a script's array: an object with `length`, whose items are its members "0", "1" and
/// so on. One that is not there is Empty. Nothing for any other object.
std::optional<std::vector<Variant>> foreign_array(IUnknownAbi* object, const ReadVariant& read);

/// The default member of any other object, as a database's field or a control of a form has one;
/// nothing for an object without one that can be read. The text that all objects of a script can be
/// shown as is none.
std::optional<Variant> foreign_value(IUnknownAbi* object, const ReadVariant& read);

/// The documents of one call. For those that are not the library's the call fills documents of ours
/// in their place, whose bytes theirs are loaded with.
class CallDocuments {
 public:
  /// Where to put what the object is to be loaded with; null for an object without `load`.
  XMLDocument* stand_in(IUnknownAbi* object);
  /// One of ours, which the host may let go of while the call waits: it lives as long as this.
  void keep(Reference<IDocumentHandleAbi> own);
  /// After a call that succeeded. What a document says to its bytes is its owner's affair: also for
  /// one of ours, a reply that is no XML is no error.
  void load_all() const;

 private:
  struct Document {
    Reference<IDispatchAbi> object;
    DispatchId load = kUnknownId;
    std::unique_ptr<XMLDocument> stand_in;
  };
  std::vector<Document> documents_;
  std::vector<Reference<IDocumentHandleAbi>> own_;
};

}  // namespace bvconn::component
