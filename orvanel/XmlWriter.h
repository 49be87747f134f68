// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <pugixml.hpp>
#include <string>

#include "orvanel/XmlFormat.h"
#include "support/Disk.h"

namespace orvanel {

/// Builds an XML document and writes it as a whole. Errors are ports::HostError with the format's notSavedNumber.
class XmlWriter {
  public:
    /// Begins with the root element, its version and the mark of a simulated instrument.
    explicit XmlWriter(XmlFormat format);

    pugi::xml_node Root() const { return document_.document_element(); }

    /// @throws ports::HostError when the text cannot stand in XML
    void Text(pugi::xml_node element, const char* attribute, const std::string& text) const;
    /// Shortest text that is read as the same value. @throws ports::HostError when it is not finite
    void Number(pugi::xml_node element, const char* attribute, double value) const;
    void Number(pugi::xml_node element, const char* attribute, float value) const;
    void Whole(pugi::xml_node element, const char* attribute, int value) const;

    /// Replaces the file, or leaves it untouched. @throws ports::HostError
    void Save(const std::string& path, const support::Disk& disk) const;

  private:
    template <class Value>
    void Finite(pugi::xml_node element, const char* attribute, Value value) const;
    [[noreturn]] void Refuse(pugi::xml_node element, const char* attribute, const std::string& why) const;

    XmlFormat format_;
    pugi::xml_document document_;
};

}  // namespace orvanel
