/// The containers of the library's interface: the standard ones.
#pragma once

#include <list>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace MXF::Zelm::Templates {

template <class T>
using vector = std::vector<T>;
template <class T>
using list = std::list<T>;
template <class Key, class T>
using map = std::map<Key, T>;
template <class Key, class T>
using multimap = std::multimap<Key, T>;
template <class First, class Second>
using pair = std::pair<First, Second>;
template <class Unit>
using basic_string = std::basic_string<Unit>;

/// The library's text: UTF-16.
using wstring = basic_string<char16_t>;

} // namespace MXF::Zelm::Templates
