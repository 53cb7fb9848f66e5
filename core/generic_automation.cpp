#include "core/generic_automation.h"

void delete_automation_chunk(CGenericAutomationChunk* chunk) {
  if (chunk == nullptr) return;
  if (chunk->points != nullptr) delete_all(*chunk->points);
  delete chunk->points;
  delete chunk;
}
