#include "URIReference.h"

#include <algorithm>
#include <optional>

namespace Tavrin::text {

namespace {

/// The components of a URI reference (RFC 3986, section 3). An undefined one is not an empty one.
struct Components {
  std::optional<std::string_view> scheme;
  std::optional<std::string_view> authority;
  std::string_view path;
  std::optional<std::string_view> query;
  std::optional<std::string_view> fragment;
};

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isScheme(std::string_view text) {
  if (text.empty() || !isLetter(text[0])) return false;
  return std::ranges::all_of(text, [](char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
  });
}

/// RFC 3986, appendix B.
Components componentsOf(std::string_view rest) {
  Components parts;
  const std::size_t colon = rest.find_first_of(":/?#");
  if (colon != std::string_view::npos && rest[colon] == ':' && isScheme(rest.substr(0, colon))) {
    parts.scheme = rest.substr(0, colon);
    rest.remove_prefix(colon + 1);
  }
  const std::size_t hash = rest.find('#');
  if (hash != std::string_view::npos) {
    parts.fragment = rest.substr(hash + 1);
    rest = rest.substr(0, hash);
  }
  const std::size_t mark = rest.find('?');
  if (mark != std::string_view::npos) {
    parts.query = rest.substr(mark + 1);
    rest = rest.substr(0, mark);
  }
  if (rest.substr(0, 2) == "//") {
    const std::size_t end = std::min(rest.find('/', 2), rest.size());
    parts.authority = rest.substr(2, end - 2);
    rest.remove_prefix(end);
  }
  parts.path = rest;
  return parts;
}

/// RFC 3986, section 5.2.4, for a path that begins with a slash.
std::string withoutDotSegments(std::string_view rest) {
  std::string path;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('/', 1), rest.size());
    const std::string_view segment = rest.substr(0, end);  // With the slash before it.
    rest.remove_prefix(end);
    if (segment == "/..") {
      path.erase(std::min(path.rfind('/'), path.size()));
    } else if (segment != "/.") {
      path += segment;
      continue;
    }
    if (rest.empty()) path += '/';
  }
  return path;
}

/// Likewise, for a path that is relative to an unknown place; `..` segments that lead out of it
/// stay.
std::string withoutInnerDotSegments(std::string_view rest) {
  std::string path;
  std::size_t fixed = 0;  // The length of the `..` segments that stay.
  while (true) {
    const std::size_t slash = rest.find('/');
    const bool isLast = slash == std::string_view::npos;
    const std::string_view segment = rest.substr(0, slash);
    if (segment == "..") {
      if (path.size() > fixed) {
        path.pop_back();                   // The slash at its end.
        path.resize(path.rfind('/') + 1);  // npos + 1 is 0.
      } else {
        path += "../";
        fixed = path.size();
      }
    } else if (segment != ".") {
      path += segment;
      if (!isLast) path += '/';
    }
    if (isLast) return path.empty() ? "./" : path;
    rest.remove_prefix(slash + 1);
  }
}

std::string normalized(const Components& parts) {
  if (parts.path.empty()) return {};
  if (parts.path[0] == '/') return withoutDotSegments(parts.path);
  // A path like that of `urn:a:b` has no segments to remove.
  if (parts.scheme) return std::string(parts.path);
  return withoutInnerDotSegments(parts.path);
}

/// RFC 3986, section 5.2.3.
std::string merged(const Components& base, std::string_view path) {
  const bool isBareAuthority = base.authority && base.path.empty();
  const std::string_view directory = base.path.substr(0, base.path.rfind('/') + 1);
  return std::string(isBareAuthority ? "/" : directory).append(path);
}

/// RFC 3986, section 5.3.
std::string composed(const Components& parts, const std::string& path) {
  std::string text;
  if (parts.scheme) text.append(*parts.scheme).append(1, ':');
  if (parts.authority) text.append("//").append(*parts.authority);
  text += path;
  if (parts.query) text.append(1, '?').append(*parts.query);
  if (parts.fragment) text.append(1, '#').append(*parts.fragment);
  return text;
}

}  // namespace

// RFC 3986, section 5.2.2.
std::string resolveURIReference(std::string_view reference, std::string_view base) {
  if (base.empty()) return std::string(reference);
  Components target = componentsOf(reference);
  if (target.scheme) return composed(target, normalized(target));
  const Components from = componentsOf(base);
  target.scheme = from.scheme;
  if (target.authority) return composed(target, normalized(target));
  target.authority = from.authority;
  if (target.path.empty()) {
    if (!target.query) target.query = from.query;
    return composed(target, std::string(from.path));
  }
  std::string path(target.path);
  if (path[0] != '/') path = merged(from, path);
  target.path = path;
  return composed(target, normalized(target));
}

}  // namespace Tavrin::text
