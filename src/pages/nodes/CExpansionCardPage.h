// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <cstddef>

#include "firmware/CardAddress.h"
#include "pages/common/PageContext.h"

class QLabel;
class QPushButton;

namespace quillon {

class CCheckList;

// "Expansion Card Configuration": the expansion cards that are plugged into the board. A new card
// is given its address here, once, while no other card is plugged in.
class CExpansionCardPage : public QWidget {
  Q_OBJECT

 public:
  explicit CExpansionCardPage(PageContext context, QWidget* parent = nullptr);

  // Shows what the table knows of the current board's cards. Asks no board.
  void ShowCards();

 Q_SIGNALS:
  // A card was addressed, or that failed; the board's nodes are to be asked for. Comes while the
  // gate is held.
  void Addressed();
  // The board was asked for its nodes and has answered.
  void NodesChanged();

 private:
  // Asks the current board first; without an answer the list is empty.
  void RefreshList();
  void ShowNoAnswer(const QString& line);
  void ShowChoice(std::size_t found);

  void OnRefresh();
  void OnAddress();
  void TellNode(AddressResult result);

  PageContext context_;
  CCheckList* list_;
  QLabel* line_;
  QPushButton* address_button_;
  // The only one that is plugged in, as the board answered last; 0 without one or with both.
  std::size_t card_ = 0;
};

}  // namespace quillon
