// The worksheet functions, in the order in which Excel learns of them: the one list from which the
// catalogue, the entry points and the registration table are made.
//
//   FUNCTION(name, function, frame, pointers, description, argument names)
//     name      export and name on the worksheet
//     function  what computes it: worksheet::function in a file of this folder
//     frame     how it takes its arguments together (see catalogue.cpp)
//     pointers  how many XLOPER pointers Excel passes
//   TWINS(name, ...) stands for two rows, xname and name, with one function and a result record each.
//
// The texts are shown by Excel as they stand, blanks included. Included several times, each time with another
// meaning of FUNCTION; SWAPTION and its kin are registered with one pointer more than they have arguments.

#define TWINS(name, frame, pointers, description, arguments)       \
  FUNCTION(x##name, name, frame, pointers, description, arguments) \
  FUNCTION(name, name, frame, pointers, description, arguments)

// clang-format off
TWINS(AMER, Scalar, 8, "American Option using BAW approximation",
      "Price, Strike, IntRt,Yield, Vol, ExpDays, OptType, RetType")
TWINS(AMERB, Scalar, 9, "American Option using binormial tree method",
      "Price, Strike, IntRt, Yield, Vol, ExpDays, OptType, Nsteps, RetType")
TWINS(ASN, Scalar, 11, "Average Price Option using a fast approximation",
      "Price, Strike, IntRt, Vol, SetPrice, TotDays, SetDays, toNext, toEnd, OptType, RetType")
TWINS(AGC, Scalar, 11, "Average Price Option using geometric conditioning",
      "Price, Strike, SetPrice, IntRt, Yield, Vol1, Vol2, AvgStart, AvgEnd, OptType, RetType")
TWINS(ASNSPRD, Scalar, 13, "Spread Option on Average Prices ",
      "PriceA, PriceB, Strike, IntRt, VolA, VolB, Correl, SetAvgA, SetAvgB, ExpDays, AvgBegDays,OptType, RetType")
FUNCTION(ASNSPRD2, ASNSPRD2, Scalar, 18, "Spread Opt. on Avg. Prices (diff. avg. periods) ",
         "PriceA, PriceB, Strike, IntRt, q1, q2, VolAf, VolBf, VolA, VolB, Correl, SetAvgA, SetAvgB, ExpDays, AvgBegDaysA, AvgBegDaysB, OptType, RetType")
TWINS(ASV, Scalar, 11, "Average Price Asian Option (Vol Approx.)",
      "Price, Strike, IntRt, Vol, SetPrice,  toExp, toStart, toEnd, TradeDays, OptType, RetType")
TWINS(BRRR, Scalar, 11, "Barrier Option",
      "Price, Strike,  IntRt, Yield, Vol, ExpDays, BarrPr, Rebate, OptType,KnockType, RetType")
FUNCTION(xBOST, BOST, Scalar, 7, "Boston Option",
         "Price, Breakeven, IntRt, Yield, Vol, ExpDays, OptType")
FUNCTION(BOST, BOST, Scalar, 7, "Boston Option",
         "Price, Breakeven, IntRt,Yield, Vol, ExpDays, OptType")
FUNCTION(CMPASN, CMPASN, LooseScalars, 17, "Compound Option on Asian",
         "Price, IntRt, Vol1, Vol2, SetPrice, TotDays, SetDays, toNext, ExpDays, CmpVol, AsnStrike, CompStrike, CmpExpDays, CmpIntRt, CmpOptType, RetType, Tsteps")
TWINS(CMPDV, Scalar, 11, "Compound Option",
      "Price, StrOver,StrUnder, TimeOver, TimeUnder, IntRt,Yield, FwdVol, Vol, OptType, RetType")
TWINS(COD, Scalar, 9, "Cash on Delivery Option",
      "Price, Strike, IntRt,Yield, Vol, ExpDays, Premium, OptType, RetType")
TWINS(CODPREM, Scalar, 7, "Contigent Premium",
      "Price, Strike, IntRt,Yield, Vol, ExpDays, OptType")
TWINS(COMBOPT, Scalar, 10, "Combination of Euro Calls and Puts",
      "Price, StrikeA, StrikeB, IntRt,Yield, VolA, VolB, ExpDays, OptType, RetType")
TWINS(DIGITAL, Scalar, 9, "Cash or Nothing Digital Option",
      "Cash, Price, Strike, IntRt,Yield, Vol, ExpDays, OptType, RetType")
TWINS(EURO, Scalar, 8, "European Option (Black-Scholes) ",
      "Price, Strike, IntRt,Yield, Vol, ExpDays, OptType, RetType")
FUNCTION(EURO_Equity, EURO_Equity, Scalar, 8, "Black-Scholes on equity  ",
         "Price, Strike, IntRt,Yield, Vol, ExpDays, OptType, RetType")
FUNCTION(EURO_Forward, EURO_Forward, Scalar, 7, "Black-Scholes on forward or futures ",
         "Price, Strike, IntRt, Vol, ExpDays, OptType, RetType")
TWINS(FOREXCH, Scalar, 8, "Foreign Exchange Option",
      "SpotAB, StrikeAB,IntRtA,IntRtB, VolAB, ExpDays, OptType, RetType")
TWINS(EIMPVOL, Scalar, 10, "Implied Volatility for European Option",
      "CallPutStr, Premium,Price, Strike, ExpDays, IntRt, Yield, MaxVol, Accuracy,Maxiter")
FUNCTION(HEAT, HEAT, Scalar, 10, "Heat Option",
         "PriceA, PriceB, Strike, IntRt, VolA, VolB, Correl, ExpDays, OptType, RetType")
TWINS(IMPVOLAB, Scalar, 10, "Implied Volatility for American Option'",
      "Premium, Price, Strike, IntRt, Yield, MaxVol, ExpDays, OptType, Nsteps, Accuracy")
TWINS(LKBK, Scalar, 8, "'Modified' Lookback Option",
      "Price, Strike, IntRt, Yield, Vol, ExpDays, OptType, RetType")
FUNCTION(xOSTRIP, OSTRIP, Scalar, 13, "Strip of Daily Fixed Price or Forward Start Options",
         "Price, Strike, NowToSet, BegDays, EndDays,FwdStFlag, IntRt, Vol_before, Vol_after, PctIndex, BasisOffset, OptType, RetType")
FUNCTION(OSTRIP, OSTRIP, Scalar, 13, "Strip of Daily Fixed Price or Forward Start Options",
         "Price, Strike, NowToSet, BegDays, EndDays, FwdStFlag, IntRt, Vol_before, Vol_after, PctIndex, BasisOffset, OptType, RetType")
FUNCTION(OSTRIP2, OSTRIP2, Scalar, 13, "Strip of Daily Fixed Price or Forward Start Options",
         "Price, Strike, NowToSet, BegDays, EndDays, FwdStFlag, IntRt, Vol_before, Vol_after, PctIndex, BasisOffset, OptType, RetType")
FUNCTION(OSTRIPSPRD, OSTRIPSPRD, Scalar, 18, "Strip of Daily Fixed Price or Forward Start Sprd Options",
         "Price1, Price2, Vol1m, Vol1d, Vol2m, Vol2d, Correlm, Correld, Strike, NowToSet, BegDays, EndDays, IntRt, PctIndex, BasisOffset, FwdStFlag, OptType, RetType")
TWINS(QUANTO, Scalar, 13, "Quanto Option (See Varnek for Classification)",
      "ExRt, Price, Strike, dIntRt, fIntRt, Yield, Vol, exVol, Correl, ExpDays, OptType, Qtype, RetType")
TWINS(RBOW, Scalar, 10, "Rainbow Option (dual commodity option)",
      "PriceA, PriceB, Strike, IntRt, VolA, VolB, Correl, ExpDays, OptType, RetType")
FUNCTION(xSPRDOPT, xSPRDOPT, Scalar, 10, "Spread Option",
         "PriceA, PriceB, Strike, IntRt, VolA, VolB, Correl, ExpDays, OptType, RetType")
FUNCTION(SPRDOPT, SPRDOPT, Scalar, 10, "Spread Option",
         "PriceA, PriceB, Strike, IntRt, VolA, VolB, Correl, ExpDays, OptType, RetType")
TWINS(WSPRD, Scalar, 7, "Wilcox Spread Option",
      "FwdSpd, Strike, IntRt, Vol, ExpDays, OptType, RetType")
FUNCTION(WARRANT, WARRANT, Scalar, 11, "Warrant pricing (as a Bermuda Option)",
         "Price, Strike, IntRt,Yield, Vol, toVested, toExp, Nwar, Nshr, WarType, RetType")
TWINS(BASVOL, BasketRanges, 6, "Basket Volatility",
      "Forward_Price, Annual_Vol, Drift, Weight, Correl_Matrix, ExpTime")
FUNCTION(BASVOLT, BASVOLT, Blocks, 7, "Bskt Vol with Diff. Maturities",
         "Fwd_rng, Vol_rng, Weight_rng, Tset_rng, Correl_rng, ExpTime, RetType")
FUNCTION(BASCORR, BASCORR, Blocks, 10, "Basket Correlation",
         "Fwd1_rng, Fwd2_rng, Vol1_rng, Vol2_rng, Weight1_rng, Weight2_rng, Tset1_rng, Tset2_rng, Correl_rng, ExpTime")
TWINS(XCAP, CapRanges, 13, "Option on Cap / Floor",
      "Price_rng, IntRt_rng, Vol_rng, ExpDays_rng, Qty_rng, StripVol, CfStrike, CompStrike, OptExpDays, OptIntRt, OptType, RetType, Tsteps")
TWINS(XCOL, EqualRanges, 11, "Option on Collar (premium only)",
      "Price_rng, IntRt_rng, Vol_rng, ExpDays_rng, SwapVol, VolSpread, OptExpDays, Cap, Floor, OptIntRt, Tsteps")
TWINS(XCOL2, EqualRanges, 12, "Option on Collar",
      "Price_rng, IntRt_rng, Vol_rng, ExpDays_rng, SwapVol, VolSpread, OptExpDays, Cap, Floor, OptIntRt, Tsteps, RetType")
FUNCTION(XCOL3, XCOL3, EqualRanges, 13, "Call or Put Option on Collar",
         "Price_rng, IntRt_rng, Vol_rng, ExpDays_rng, SwapVol, VolSpread, OptExpDays, Cap, Floor, OptIntRt, Tsteps, OptType, RetType")
TWINS(YRSTRIP, EqualRanges, 11, "Annual Strip of Daily Options",
      "Price_rng, Strike_rng, IntRt_rng, Vol_rng, ToSet_rng, BegDays_rng, EndDays_rng, Qty_rng, AnnualQty, Opttype, RetType")
TWINS(ASTRIP, StripRanges, 14, "Asian Option on a Strip",
      "Price_rng, Vol_rng, Next_rng, End_rng, Settles_rng, SetDays, Strike, IntRt,Correl, SetPrice, ToExp, Opttype, RetType, RetMonth")
FUNCTION(ASTRIPMV, ASTRIPMV, StripRanges, 15, "Asian Option on a Strip with Daily Volume",
         "Price_rng, Vol_rng, Volume_rng, Next_rng, End_rng, Settles_rng, SetDays, Strike, IntRt,Correl, SetPrice, ToExp, Opttype, RetType, RetMonth")
TWINS(BASVOL2d, Scalar, 10, "Basket Vol  of 2 assets",
      "Price1, Price2, Vol1, Vol2, Drift1, Drift2, Weight1, Weight2, Correl, ExpTime")
TWINS(ASTRIP2m, LooseScalars, 19, "Asian Option on a Strip of 2 assets",
      "Price1, Price2, Vol1, Vol2, Next1, Next2, End1, End2, Settle1, Settle2, SetDays, Strike, IntRt, Correl, SetPrice, ToExp, Opttype, RetType, RetMonth")
FUNCTION(xAdjASTRIP2m, AdjASTRIP2m, LooseScalars, 21, "Crude Asian Option on a Strip of 2 assets",
         "Price1, Price2, Vol1, Vol2, Sig1, Sig2, Next1, Next2, End1, End2, Settle1, Settle2, SetDays, Strike, IntRt, Correl, SetPrice, ToExp, Opttype, RetType, RetMonth")
FUNCTION(xCrudeAPO, xCrudeAPO, LooseScalars, 19, "Crude Asian Option on a Strip of 2 assets",
         "Price1, Price2, Vol1, Vol2, Sig1, Sig2, AvgStart, AvgEnd, Settle1, Settle2, SetDays, Strike, IntRt, Correl, SetPrice, ToExp, Opttype, RetType, RetMonth")
FUNCTION(PPLUS, PPLUS, LooseScalars, 23, "PPlus Option Pricing Model",
         "SA1, SA2, SB1, SB2, DaysSB1, DaysSB2, VolA1, VolA2, VolB1, VolB2, CorrA1A2, CorrB1B2, CorrA1B1, CorrA2B1, CorrA1B2, CorrA2B2, Strike, IR, Tmat, Opttype, Risk, Aflag, Bflag")
FUNCTION(AdjASTRIP2m, AdjASTRIP2m, LooseScalars, 21, "Crude Asian Option on a Strip of 2 assets",
         "Price1, Price2, Vol1, Vol2, Sig1, Sig2, Next1, Next2, End1, End2, Settle1, Settle2, SetDays, Strike, IntRt, Correl, SetPrice, ToExp, Opttype, RetType, RetMonth")
TWINS(SWAPTION, SwapRanges, 12, "Option to enter a swap",
      "Fwd, Qty, Swaptime, Rates, Swapvol, Strike, IntRt, Expiry, Opttype, RetType, RetMonth")
FUNCTION(SWAPTION1, SWAPTION1, EqualRanges, 12, "Option to enter a swap with different fixed prices",
         "Fwd, Qty, Swaptime, Rates, Strike, Swapvol, IntRt, Expiry, Opttype, RetType, RetMonth")
// clang-format on

#undef TWINS
#undef FUNCTION
