/// @file
/// Convenient writing of a document by a program, with any writer.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLWriter.h>

#include <array>
#include <cstddef>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace Tavrin {

/// Writes a document with a writer of any type: elements end with their scope, namespaces are
/// declared by themselves, and numbers stay numbers where the format has them.
///
/// @code
/// XMLWriter_X891 writer;
/// writer.setOutputStream(&std::cout);
/// DocumentWriter document(writer, {{"m", "urn:menu"}});
/// const auto menu = document.element("m:menu", {{"version", 2}, {"xml:lang", "en"}});
/// {
///   const auto dish = document.element("m:dish", {{"vegan", false}});
///   document.element("m:name", "Fish & chips");
///   document.element("m:prices", {5.5, 7.25});
/// }
/// writer.comment("Closed on Mondays");
/// document.endDocument();
/// @endcode
///
/// Events that this class does not have go to the writer itself, which may be called in between.
///
/// A destructor that ends an element or the document throws what the writer throws. Where an
/// exception leaves the scope, it writes nothing: the document is not complete. Elements that are
/// open where an outer one, or the document, ends are ended, too.
class TAVRIN_API DocumentWriter {
 public:
  /// The namespace name of each prefix; the default namespace has an empty prefix.
  using Namespaces = std::map<std::string, std::string>;

  /// The value of an attribute, or content of an element: text, or numbers or booleans. In Fast
  /// Infoset they are written as such, and in XML text as a list with blanks between, of floating
  /// point numbers with as many digits as it takes to read the same numbers again.
  class TAVRIN_API Value {
   public:
    // What is written is text or a number, so it becomes a value by itself.
    // NOLINTBEGIN(google-explicit-constructor)
    Value(const char* text);       ///< Text, in UTF-8. @throws SAXException for a null pointer
    Value(std::string text);       ///< Text, in UTF-8.
    Value(std::string_view text);  ///< Text, in UTF-8, which is copied.
    Value(char character);         ///< Text of one character. Other octets are numbers.
    Value(wchar_t) = delete;       ///< Neither a number nor UTF-8; so are the next two.
    Value(char16_t) = delete;
    Value(char32_t) = delete;
    Value(int number) : Value(std::vector<int>{number}) {}            ///< A 32-bit integer.
    Value(unsigned number) : Value(static_cast<long>(number)) {}      ///< A 64-bit integer.
    Value(long number) : Value(std::vector<long>{number}) {}          ///< A 64-bit integer.
    Value(long long number) : Value(static_cast<long>(number)) {}     ///< A 64-bit integer.
    Value(unsigned long number);                                      ///< Text above INT64_MAX.
    Value(unsigned long long number) : Value(std::size_t{number}) {}  ///< Text above INT64_MAX.
    Value(float number) : Value(std::vector<float>{number}) {}        ///< In single precision.
    Value(double number) : Value(std::vector<double>{number}) {}      ///< In double precision.
    /// A boolean. It is not made from a pointer, as a plain `bool` would be.
    template <typename Bool, std::enable_if_t<std::is_same_v<Bool, bool>, int> = 0>
    Value(Bool truth) : Value(std::vector<bool>{truth}) {}
    Value(std::vector<short> numbers);       ///< 16-bit integers.
    Value(const std::vector<int>& numbers);  ///< 32-bit integers.
    Value(std::vector<long> numbers);        ///< 64-bit integers.
    Value(std::vector<float> numbers);       ///< Single precision numbers.
    Value(std::vector<double> numbers);      ///< Double precision numbers.
    Value(std::vector<bool> truths);         ///< Booleans.
    /// As a vector of the same items.
    template <typename Item, typename List = std::vector<Item>,
              std::enable_if_t<std::is_constructible_v<Value, List>, int> = 0>
    Value(std::initializer_list<Item> items) : Value(List(items)) {}
    /// As a vector of the same items.
    template <typename Item, std::size_t count, typename List = std::vector<Item>,
              std::enable_if_t<std::is_constructible_v<Value, List>, int> = 0>
    Value(const Item (&items)[count]) : Value(List(items, items + count)) {}
    /// As a vector of the same items.
    template <typename Item, std::size_t count, typename List = std::vector<Item>,
              std::enable_if_t<std::is_constructible_v<Value, List>, int> = 0>
    Value(const std::array<Item, count>& items) : Value(List(items.begin(), items.end())) {}
    // NOLINTEND(google-explicit-constructor)

    /// The text, also of a value that is typed.
    std::string toString() const { return data_ ? data_->toString() : text_; }
    /// The number of the encoding algorithm (see Tavrin::algorithms), or -1 for text. An empty list
    /// is text.
    int algorithm() const { return algorithm_; }
    const EncodedData* data() const { return data_.get(); }  ///< The typed value, or null for text.

   private:
    std::string text_;
    int algorithm_ = -1;
    std::shared_ptr<const EncodedData> data_;  // Copies share it.
  };

  /// An attribute to be written.
  struct Attribute {
    std::string qName;  ///< Name as it is written; its prefix is that of a namespace, or `xml`.
    Value value;        ///< Text, or what is typed in Fast Infoset.
  };

  /// An element that ends with the object.
  class TAVRIN_API Scope {
   public:
    explicit Scope(DocumentWriter& document);  ///< The innermost element that is open.
    /// Ends the element, unless it has ended.
    ~Scope() noexcept(false);  // NOLINT(bugprone-exception-escape): failures must not be lost.
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    DocumentWriter& document_;
    const std::size_t depth_;
    const int exceptions_;
  };

  /// Begins a document.
  /// @param writer     outlives this object
  /// @param namespaces all that the document uses; its root element declares them
  explicit DocumentWriter(XMLWriter& writer, Namespaces namespaces = {});
  /// Ends the document as endDocument, unless it has ended.
  ~DocumentWriter() noexcept(false);  // NOLINT(bugprone-exception-escape): as for a scope.
  DocumentWriter(const DocumentWriter&) = delete;
  DocumentWriter& operator=(const DocumentWriter&) = delete;

  /// @name Elements
  /// Attributes stand in braces, or in a vector if they are optional or computed.
  /// @throws SAXException `The prefix "p" has no namespace`, and what the writer throws
  /// @{

  /// Starts an element, which ends with the object that is returned: at once, if that is not kept.
  Scope element(const std::string& qName, std::initializer_list<Attribute> attributes = {});
  /// Writes a whole element.
  void element(const std::string& qName, std::initializer_list<Attribute> attributes,
               const Value& content);
  /// Writes a whole element without attributes.
  /// @tparam Content whatever a Value is made from
  template <typename Content,
            std::enable_if_t<std::is_constructible_v<Value, const Content&>, int> = 0>
  void element(const std::string& qName, const Content& content) {
    element(qName, {}, Value(content));
  }
  /// Writes a whole element without attributes, but with numbers or booleans.
  template <typename Item>
  void element(const std::string& qName, std::initializer_list<Item> items) {
    element(qName, {}, Value(items));
  }
  /// As above, with attributes of a vector. Any allocator, because of which no braces become one.
  template <typename Allocator>
  Scope element(const std::string& qName, const std::vector<Attribute, Allocator>& attributes) {
    start(qName, attributes);
    return Scope(*this);
  }
  /// Likewise.
  template <typename Allocator>
  void element(const std::string& qName, const std::vector<Attribute, Allocator>& attributes,
               const Value& content) {
    start(qName, attributes);
    const Scope scope(*this);
    write(content);
  }
  /// @}

  /// Writes content of the innermost element: text, or what is typed in Fast Infoset.
  void write(const Value& value);

  /// Ends the document, and elements that are open. After it, whether it succeeds or not, this
  /// object writes nothing, and refuses to: `The document has ended`. A program that calls it gets
  /// failures where it ends the document, and may use what has been written at once.
  void endDocument();

  /// @name Without a scope
  /// @{

  /// Starts an element.
  void start(const std::string& qName, std::initializer_list<Attribute> attributes = {}) {
    start(qName, attributes.begin(), attributes.size());
  }
  /// Likewise, with attributes of a vector.
  template <typename Allocator>
  void start(const std::string& qName, const std::vector<Attribute, Allocator>& attributes) {
    start(qName, attributes.data(), attributes.size());
  }
  /// Ends the innermost element.
  void end();
  /// How many elements are open.
  std::size_t depth() const { return open_.size(); }
  /// @}

 private:
  void start(const std::string& qName, const Attribute* attributes, std::size_t count);
  void endElement();

  XMLWriter& writer_;
  const Namespaces namespaces_;
  std::vector<XMLWriter::Element> open_;
  const int exceptions_;
  bool hasEnded_ = false;
};

}  // namespace Tavrin
