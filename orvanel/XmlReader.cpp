#include "orvanel/XmlReader.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "ports/HostError.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Text.h"

namespace orvanel {

namespace {

std::string Quoted(std::string_view text) {
    return "\"" + std::string(text.substr(0, 80)) + "\"";
}

std::string Listed(std::initializer_list<std::string_view> names) {
    std::string list;
    for (const auto name : names)
        list += (list.empty() ? "" : ", ") + std::string(name);
    return list.empty() ? "none" : list;
}

bool Holds(std::initializer_list<std::string_view> names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Bytes of the UTF-8 sequence at the start, or 0 when it is none.
std::size_t SequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xF5 ? 0 : first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
    if (length == 0 || text.size() < length) return 0;
    for (std::size_t at = 1; at < length; ++at)
        if ((byte(at) & 0xC0) != 0x80) return 0;
    const bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
    const bool outside = (first == 0xED && byte(1) >= 0xA0) || (first == 0xF4 && byte(1) >= 0x90);
    return overlong || outside ? 0 : length;
}

}  // namespace

bool IsXmlText(std::string_view text) {
    while (!text.empty()) {
        const auto c = static_cast<unsigned char>(text[0]);
        if (c < 0x20 && c != '\t' && c != '\r' && c != '\n') return false;
        const std::size_t length = SequenceLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

XmlReader::XmlReader(std::string path, XmlFormat format) : path_(std::move(path)), format_(std::move(format)) {
    try {
        text_ = support::ReadWholeFile(path_, fileSizeLimit);
    } catch (const support::FileError& error) {
        throw ports::HostError(format_.unreadableNumber, error.what());
    }
    const std::string foreign = "this is not " + format_.what + " of this host, ";
    if (!IsXmlText(text_))
        throw ports::HostError(format_.damagedNumber, path_ + ": " + foreign + "which is an XML text in UTF-8");
    const auto result = document_.load_buffer(text_.data(), text_.size(), pugi::parse_default, pugi::encoding_utf8);
    if (!result) {
        std::string reason = result.description();
        if (!reason.empty() && reason.back() == '.') reason.pop_back();
        FailAt(result.offset, "the file is damaged or cut off (" + reason + "), take an intact copy of it");
    }
    std::size_t elements = 0;
    for (const auto& child : document_.children())
        if (child.type() == pugi::node_element) ++elements;
    if (elements != 1 || Root().name() != format_.rootElement)
        Fail(Root(), foreign + "whose only root element is " + format_.rootElement);
    if (const int version = Whole(Root(), "version", 1, 999999); version != format_.version)
        Fail(Root(), "version " + std::to_string(version) + " of this format is not known, only version " +
                         std::to_string(format_.version) + " is");
    if (Text(Root(), "instrument") != "simulated")
        Fail(Root(), "it was not made for a simulated instrument (instrument=\"simulated\")");
}

void XmlReader::FailAt(std::ptrdiff_t offset, const std::string& text) const {
    std::string place;
    if (offset >= 0) {
        const auto end = text_.begin() + std::min<std::ptrdiff_t>(offset, std::ssize(text_));
        place = ", line " + std::to_string(1 + std::count(text_.begin(), end, '\n'));
    }
    throw ports::HostError(format_.damagedNumber, path_ + place + ": " + text);
}

void XmlReader::Fail(pugi::xml_node at, const std::string& text) const {
    FailAt(at.offset_debug(), text);
}

void XmlReader::CheckAttributes(pugi::xml_node element, std::initializer_list<std::string_view> required,
                                std::initializer_list<std::string_view> optional) const {
    std::map<std::string, int> seen;
    for (const auto& attribute : element.attributes()) {
        const std::string name = attribute.name();
        if (!Holds(required, name) && !Holds(optional, name))
            Fail(element, "element " + std::string(element.name()) + " has an unknown attribute " + Quoted(name) +
                              ", it may have: " + Listed(required) + (optional.size() ? ", " + Listed(optional) : ""));
        if (++seen[name] > 1)
            Fail(element, "element " + std::string(element.name()) + " has attribute " + Quoted(name) + " twice");
    }
    for (const auto name : required)
        if (!seen.contains(std::string(name)))
            Fail(element, "element " + std::string(element.name()) + " lacks attribute " + Quoted(name));
}

void XmlReader::CheckChildren(pugi::xml_node element, std::initializer_list<std::string_view> names,
                              std::size_t limit) const {
    std::map<std::string, std::size_t> seen;
    for (const auto& child : element.children()) {
        if (child.type() != pugi::node_element)
            Fail(element, "element " + std::string(element.name()) + " holds a text, it may hold elements only");
        if (!Holds(names, child.name()))
            Fail(child, "element " + std::string(element.name()) + " holds an unknown element " + Quoted(child.name()) +
                            ", it may hold: " + Listed(names));
        if (++seen[child.name()] > limit)
            Fail(child, "element " + std::string(element.name()) + " holds more than " + std::to_string(limit) +
                            " elements " + Quoted(child.name()));
    }
}

std::string XmlReader::Text(pugi::xml_node element, const char* attribute, std::size_t lengthLimit) const {
    const pugi::xml_attribute found = element.attribute(attribute);
    if (!found) Fail(element, "element " + std::string(element.name()) + " lacks attribute " + Quoted(attribute));
    std::string text = found.value();
    if (text.size() > lengthLimit)
        Fail(element, "attribute " + Quoted(attribute) + " has " + std::to_string(text.size()) +
                          " bytes, more than the " + std::to_string(lengthLimit) + " allowed");
    if (!IsXmlText(text)) Fail(element, "attribute " + Quoted(attribute) + " holds a control character");
    return text;
}

double XmlReader::Number(pugi::xml_node element, const char* attribute) const {
    const std::string text = Text(element, attribute);
    const auto value = support::ParseDouble(text);
    if (!value) Fail(element, "attribute " + Quoted(attribute) + " is " + Quoted(text) + ", expected is a number");
    return *value;
}

float XmlReader::Single(pugi::xml_node element, const char* attribute) const {
    const std::string text = Text(element, attribute);
    const auto value = support::ParseSingle(text);
    if (!value)
        Fail(element,
             "attribute " + Quoted(attribute) + " is " + Quoted(text) + ", expected is a number of single precision");
    return *value;
}

int XmlReader::Whole(pugi::xml_node element, const char* attribute, int minimum, int maximum) const {
    const std::string text = Text(element, attribute);
    const auto value = support::ParseInt32(text);
    if (!value || *value < minimum || *value > maximum || std::to_string(*value) != text)
        Fail(element, "attribute " + Quoted(attribute) + " is " + Quoted(text) + ", expected is a whole number from " +
                          std::to_string(minimum) + " to " + std::to_string(maximum));
    return *value;
}

pugi::xml_node AppendXmlRoot(pugi::xml_document& document, const XmlFormat& format) {
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "utf-8";
    pugi::xml_node root = document.append_child(format.rootElement.c_str());
    root.append_attribute("version") = format.version;
    root.append_attribute("instrument") = "simulated";
    return root;
}

std::string XmlDocumentText(const pugi::xml_document& document) {
    std::ostringstream text;
    document.save(text, "  ", pugi::format_indent, pugi::encoding_utf8);
    return std::move(text).str();
}

}  // namespace orvanel
