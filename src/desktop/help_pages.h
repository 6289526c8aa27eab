#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace velgrove {

/// A page of the manual.
struct HelpPage {
  QString file;  ///< in the manual's folder
  QString title;
  QString text;  ///< what can be searched
};

/// What a search found.
struct HelpHit {
  const HelpPage* page;
  QString around;  ///< the words about the first place in the text; "" when only the title has them
};

/// The pages in the order in which they are read; none when the folder has no list of them that can be read.
[[nodiscard]] std::vector<HelpPage> readHelpPages(const QString& folder);

/// What is looked for: the words between blanks.
[[nodiscard]] QStringList searchWords(const QString& typed);

/// The pages that have all words, in any case and order; those first that have most of them in the title.
[[nodiscard]] std::vector<HelpHit> searchHelp(const std::vector<HelpPage>& pages, const QStringList& words);

}  // namespace velgrove
