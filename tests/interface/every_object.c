#include <kelvo.h>
#include <stdint.h>

#include "interface/every_function.h"

typedef int32_t number;
typedef uint32_t step_rates[256];
typedef const uint16_t speed_rows[256][4];
typedef int32_t gain_words[7];
typedef int32_t tuning_words[84];

/* NOLINTBEGIN(bugprone-macro-parentheses): a type stands alone */

/* Shows an object; it has exactly this type. */
#define SHOW(type, object)                                                                 \
  do {                                                                                     \
    _Static_assert(_Generic(&(object), type *: 1, default: 0), "not " #type ": " #object); \
    show(#object, &(object), sizeof(object));                                              \
  } while (0)

#define SHOW_IMAGE(bytes, object)                                                            \
  do {                                                                                       \
    _Static_assert(_Generic(&(object), const uint8_t(*)[bytes]: 1, default: 0), "" #object); \
    show(#object, &(object), sizeof(object));                                                \
  } while (0)

/* NOLINTEND(bugprone-macro-parentheses) */

void show_every_object(void (*show)(const char* object, const void* address, size_t size)) {
  SHOW(number, fd);
  SHOW(number, gi30516Ver);
  SHOW(number, cMotorPower);
  SHOW(number, hndl);
  SHOW(number, giSerTiltUseHall);
  SHOW(tuning_words, giMOTOR_Init_Reg);
  SHOW(gain_words, iPanVETRA_Motor_Reg);
  SHOW(gain_words, iTiltVETRA_Motor_Reg);
  SHOW(gain_words, iPanTASMERE_PID);
  SHOW(gain_words, iTiltTASMERE_PID);
  SHOW(step_rates, PPS_512uStepPhase1320);
  SHOW(step_rates, PPS_512uStepPhase);
  SHOW(step_rates, PPS_1_2Phase);
  SHOW(step_rates, PPS_2_2Phase);
  SHOW(step_rates, PPS_1_2Phase_800);
  SHOW(speed_rows, SpeedTable);
  SHOW_IMAGE(33276, CORVO_PROGRAM_DATA_DE015);
  SHOW_IMAGE(1228, CORVO_PROGRAM3_DATA_DE015);
  SHOW_IMAGE(944, CORVO_PROGRAM2_DATA_DE015);
  SHOW_IMAGE(35000, CORVO_PROGRAM_DATA_DF033);
  SHOW_IMAGE(1160, CORVO_PROGRAM3_DATA_DF033);
  SHOW_IMAGE(648, CORVO_PROGRAM2_DATA_DF033);
  SHOW_IMAGE(33000, CORVO_PROGRAM_DATA_T5391);
  SHOW_IMAGE(1160, CORVO_PROGRAM3_DATA_T5391);
  SHOW_IMAGE(648, CORVO_PROGRAM2_DATA_T5391);
}
