#include "desktop/help_pages.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <functional>

namespace velgrove {
namespace {

constexpr int CharactersBefore = 30;  // the found word
constexpr int CharactersAround = 90;

bool has(const QString& text, const QString& word) {
  return text.contains(word, Qt::CaseInsensitive);
}

QString wordsAround(const QString& text, const QString& word) {
  const auto place = text.indexOf(word, 0, Qt::CaseInsensitive);
  if (place < 0) return {};
  const auto begin =
      place > CharactersBefore ? std::min(text.indexOf(' ', place - CharactersBefore) + 1, place) : 0;
  const auto after = text.indexOf(' ', begin + CharactersAround);
  return (begin > 0 ? "... " : "") + text.mid(begin, after < 0 ? -1 : after - begin) +
         (after < 0 ? "" : " ...");
}

}  // namespace

std::vector<HelpPage> readHelpPages(const QString& folder) {
  QFile file(folder + "/pages.json");
  if (!file.open(QIODevice::ReadOnly)) return {};
  std::vector<HelpPage> pages;
  for (const auto& each : QJsonDocument::fromJson(file.readAll()).array()) {
    const QJsonObject page = each.toObject();
    pages.push_back({.file = page["file"].toString(),
                     .title = page["title"].toString(),
                     .text = page["text"].toString()});
  }
  return pages;
}

QStringList searchWords(const QString& typed) {
  return typed.simplified().split(' ', Qt::SkipEmptyParts);
}

std::vector<HelpHit> searchHelp(const std::vector<HelpPage>& pages, const QStringList& words) {
  if (words.isEmpty()) return {};
  std::vector<HelpHit> hits;
  const auto countIn = [&words](const QString& text) {
    return std::ranges::count_if(words, [&text](const QString& word) { return has(text, word); });
  };
  for (const HelpPage& page : pages)
    if (countIn(page.title + ' ' + page.text) == words.size())
      hits.push_back({.page = &page, .around = wordsAround(page.text, words.front())});
  std::ranges::stable_sort(hits, std::greater<>(),
                           [&countIn](const HelpHit& hit) { return countIn(hit.page->title); });
  return hits;
}

}  // namespace velgrove
