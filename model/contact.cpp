#include "model/contact.h"

#include <utility>

namespace kelmo {

cResidueContact::cResidueContact(std::string firstChain, std::string firstNumber,
                                 std::string firstName, std::string secondChain,
                                 std::string secondNumber, std::string secondName,
                                 eInteractionCriterion foundBy)
    : cResidueContact(std::move(firstChain), std::move(firstNumber), std::move(firstName),
                      std::move(secondChain), std::move(secondNumber), std::move(secondName), {},
                      foundBy) {}

cResidueContact::cResidueContact(std::string firstChain, std::string firstNumber,
                                 std::string firstName, std::string secondChain,
                                 std::string secondNumber, std::string secondName,
                                 std::set<eContactType> types, eInteractionCriterion foundBy)
    : chain1(std::move(firstChain)), chain2(std::move(secondChain)),
      residueName1(std::move(firstName)), residueName2(std::move(secondName)),
      residueNumber1(std::move(firstNumber)), residueNumber2(std::move(secondNumber)),
      contactTypes(std::move(types)), criterion(foundBy) {}

} // namespace kelmo
