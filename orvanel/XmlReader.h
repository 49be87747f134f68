// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <initializer_list>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "orvanel/XmlFormat.h"
#include "support/Disk.h"

namespace orvanel {

/// Reads an XML file strictly: nothing unknown, nothing missing, nothing beyond a limit. Every error is a
/// ports::HostError that names file, line, what is wrong and what is expected.
class XmlReader {
  public:
    static constexpr std::uint64_t fileSizeLimit = 4u << 20;

    /// Reads the file and checks root element, version and the mark of a simulated instrument.
    XmlReader(std::string path, XmlFormat format, const support::Disk& disk);

    pugi::xml_node Root() const { return document_.document_element(); }

    [[noreturn]] void Fail(pugi::xml_node at, const std::string& text) const;
    void CheckAttributes(pugi::xml_node element, std::initializer_list<std::string_view> required,
                         std::initializer_list<std::string_view> optional = {}) const;
    /// Refuses children other than elements of these names, and more than the limit of any one.
    void CheckChildren(pugi::xml_node element, std::initializer_list<std::string_view> names,
                       std::size_t limit = 1) const;

    std::string Text(pugi::xml_node element, const char* attribute, std::size_t lengthLimit = 1024) const;
    double Number(pugi::xml_node element, const char* attribute) const;
    float Single(pugi::xml_node element, const char* attribute) const;
    int Whole(pugi::xml_node element, const char* attribute, int minimum, int maximum) const;
    bool Flag(pugi::xml_node element, const char* attribute) const { return Whole(element, attribute, 0, 1) == 1; }

  private:
    /// Refuses texts and document types outside the root element, and encodings other than UTF-8.
    void CheckSurroundings() const;
    [[noreturn]] void FailAt(std::ptrdiff_t offset, const std::string& text) const;

    std::string path_;
    XmlFormat format_;
    std::string text_;
    pugi::xml_document document_;
};

}  // namespace orvanel
